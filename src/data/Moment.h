// SPDX-License-Identifier: GPL-3.0-or-later
// Moments as project files keep them: days since 1899-12-30 in local time, the time of day as the fraction.
#pragma once

#include <ctime>
#include <functional>

/// Where a moment comes from: the clock, or what a test says.
using MomentSource = std::function<double()>;

/// `local` in days. Its date must exist in the calendar; a second of 60 counts as the first of the next
/// minute.
double DaysOf(const std::tm& local);

/// The system clock's local time in days, to the second.
double LocalNow();
