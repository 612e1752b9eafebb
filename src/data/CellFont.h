// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

/// The font of a column on the screen. The default name stands for the small font of the user's system; no
/// file keeps fonts.
struct CellFont {
    static constexpr const char* kDefaultName = "MS Sans Serif";
    static constexpr double kDefaultSize = 8.0;

    std::string name = kDefaultName;
    double size = kDefaultSize; ///< points
    bool bold = false;
    bool italic = false;

    bool IsDefault() const { return *this == CellFont{}; }
    bool operator==(const CellFont&) const = default;
};
