// SPDX-License-Identifier: GPL-3.0-or-later
#include "batch/WriteProjections.h"

#include "base/ForeignText.h"
#include "base/NumberText.h"

#include <algorithm>

namespace
{
/// A column of texts, its title first.
using TextColumn = std::vector<std::string>;

TextColumn TimesOf(const FitTables::Projection& projection)
{
    TextColumn column{"Time"};
    for (const FitTables::ProjectedPoint& point : projection.series)
        column.push_back(std::to_string(point.time));
    return column;
}

template <typename Value>
TextColumn ColumnOf(const FitTables::Projection& projection, const std::string& title, Value value)
{
    TextColumn column{title};
    for (const FitTables::ProjectedPoint& point : projection.series)
        column.push_back(number_text::Plain(value(point)));
    return column;
}

/// Characters, not bytes: a title may hold others than those of English.
std::size_t WidthOf(const std::string& text)
{
    return static_cast<std::size_t>(std::count_if(
        text.begin(), text.end(), [](char c) { return (static_cast<unsigned char>(c) & 0xC0U) != 0x80U; }));
}

std::string Laid(const std::vector<TextColumn>& columns)
{
    std::string text;
    for (std::size_t row = 0; row < columns.front().size(); ++row) {
        for (const TextColumn& column : columns) {
            std::size_t width = 0;
            for (const std::string& cell : column)
                width = std::max(width, WidthOf(cell));
            text += "  " + std::string(width - WidthOf(column[row]), ' ') + column[row];
        }
        text += "\n";
    }
    return text;
}
} // namespace

std::string ProjectionsAsText(const FitTables& tables)
{
    std::vector<TextColumn> columns;
    for (const FitTables::Projection& projection : tables.projections) {
        if (!projection.units) // the fit stands above
            continue;
        if (columns.empty())
            columns.push_back(TimesOf(projection));
        columns.push_back(ColumnOf(projection, Printable(projection.scenario),
                                   [](const auto& point) { return point.population; }));
        if (projection.series.front().low) {
            columns.push_back(ColumnOf(projection, "Low", [](const auto& point) { return *point.low; }));
            columns.push_back(ColumnOf(projection, "High", [](const auto& point) { return *point.high; }));
        }
    }
    return columns.empty() ? std::string() : "\nProjections\n" + Laid(columns);
}
