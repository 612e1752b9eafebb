// SPDX-License-Identifier: GPL-3.0-or-later
// What a user has changed of the look of one graph. Everything that is empty follows the drawing's own
// choice.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>

enum class SymbolShape : std::uint8_t {
    None,
    Circle,
    FilledCircle,
    Square,
    FilledSquare,
    Triangle,
    FilledTriangle,
    Diamond,
    FilledDiamond,
    Cross,
    Plus,
};

enum class LineKind : std::uint8_t { None, Solid, Dashed, Dotted, DashDot };

struct SeriesLook {
    std::optional<std::uint32_t> colour; ///< 0xRRGGBB
    std::optional<SymbolShape> symbol;
    std::optional<LineKind> line;
    bool operator==(const SeriesLook&) const = default;
};

/// The ends of an axis, in the units of its numbers; low < high.
struct AxisSpan {
    double low = 0.0;
    double high = 0.0;
    bool operator==(const AxisSpan&) const = default;
};

struct GraphLook {
    std::optional<std::string> xTitle; ///< in place of title and unit
    std::optional<std::string> yTitle;
    std::optional<AxisSpan> x;
    std::optional<AxisSpan> y;
    bool legend = true;
    bool grid = true;
    std::map<std::string, SeriesLook> series; ///< by the name of the series in the legend
    bool operator==(const GraphLook&) const = default;
};
