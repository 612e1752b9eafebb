// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/Reading.h"

#include <string>
#include <string_view>

/// Starting values of a two-parameter model, each of which may be held fixed while the other is searched.
struct StartVals {
    std::string Param1Name;
    std::string Param2Name;
    double param1 = 0.0;
    double param2 = 0.0;
    bool Fixed1 = false;
    bool Fixed2 = false;
};

/// A starting value: a number of at least 0.
Reading<double> ReadStartingValue(std::string_view typed);
