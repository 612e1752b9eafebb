// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

/// One thing that the program says about its own answer.
struct Remark {
    std::string code; ///< one word that never changes, for other programs ("StockUnbounded")
    std::string text; ///< one or two sentences with the numbers of this fit

    bool operator==(const Remark&) const = default;
};
