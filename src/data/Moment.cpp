// SPDX-License-Identifier: GPL-3.0-or-later
#include "data/Moment.h"

#include <chrono>

double DaysOf(const std::tm& local)
{
    using namespace std::chrono;
    constexpr sys_days kDayZero = December / 30 / 1899;
    constexpr double kSecondsPerDay = 86400.0;

    const sys_days date = year{local.tm_year + 1900} / month{static_cast<unsigned>(local.tm_mon + 1)} /
                          day{static_cast<unsigned>(local.tm_mday)};
    const int seconds = (local.tm_hour * 60 + local.tm_min) * 60 + local.tm_sec;
    return static_cast<double>((date - kDayZero).count()) + seconds / kSecondsPerDay;
}

double LocalNow()
{
    const std::time_t now = std::time(nullptr);
    return DaysOf(
        *std::localtime(&now)); // its shared result is copied out at once; only the screen's thread asks
}
