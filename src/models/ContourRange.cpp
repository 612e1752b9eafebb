// SPDX-License-Identifier: GPL-3.0-or-later
#include "models/ContourRange.h"

#include "base/FieldRules.h"
#include "base/StringTable.h"

namespace
{
constexpr double kUpper = 3.4E+38; // just inside the range of a 32-bit float
constexpr std::int16_t kMostPoints = 200;

Reading<double> ReadBoundFrom(std::string_view typed, double lower, int sentenceId)
{
    return field_rules::ReadNumber(
        typed, [lower](double value) { return value >= lower && value <= kUpper; },
        LoadResString(sentenceId) + number_text::Plain(kUpper));
}
} // namespace

Reading<double> ReadContourBound(std::string_view typed, std::string_view name)
{
    if (name == "K")
        return ReadBoundFrom(typed, 1.0, 1911);
    if (name == "r")
        return ReadBoundFrom(typed, 0.0, 1910);
    return field_rules::ReadNumber(typed, [](double) { return true; }, {});
}

Reading<std::int16_t> ReadContourPoints(std::string_view typed)
{
    return field_rules::ReadInt16(
        typed, [](double value) { return value >= 1.0 && value <= kMostPoints; },
        LoadResString(1911) + std::to_string(kMostPoints));
}

std::optional<std::string> RefuseContourRange(const ContourRange& range)
{
    if (range.Param1Lo < range.Param1Hi && range.Param2Lo < range.Param2Hi)
        return std::nullopt;
    return LoadResString(1912);
}
