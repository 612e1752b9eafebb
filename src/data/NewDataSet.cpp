// SPDX-License-Identifier: GPL-3.0-or-later
#include "data/NewDataSet.h"

#include "base/FieldRules.h"
#include "base/StringTable.h"
#include "base/Text.h"
#include "data/clsVeltData.h"

#include <cmath>
#include <limits>

namespace
{
constexpr int kNotAPeriod = 1918;
constexpr int kIllegalRange = 1922;
constexpr double kMostDifference = 200.0;
} // namespace

Reading<std::int32_t> ReadTimePeriod(std::string_view typed)
{
    const auto isLabel = [](double value) {
        return value > 0.0 && value == std::floor(value) &&
               value <= static_cast<double>(std::numeric_limits<std::int32_t>::max());
    };
    const Reading<double> read = field_rules::ReadNumber(typed, isLabel, LoadResString(kNotAPeriod));
    if (const auto* const sentence = std::get_if<std::string>(&read))
        return *sentence;
    return static_cast<std::int32_t>(std::get<double>(read));
}

std::optional<std::string> RefusalOfRange(const std::string& typedMin, const std::string& typedMax)
{
    const auto min = number_text::ParseTyped(typedMin);
    const auto max = number_text::ParseTyped(typedMax);
    if (min && max && *max - *min <= kMostDifference && Trim(typedMin) <= Trim(typedMax) && *min <= *max)
        return std::nullopt;
    return LoadResString(kIllegalRange);
}

void Begin(clsVeltData& data, const NewDataSet& wanted)
{
    data.DSDesc(wanted.FileDescription);
    data.MinTimeP(wanted.MinTimeP);
    data.MaxTimeP(wanted.MaxTimeP);
    data.TimeInts(wanted.MaxTimeP - wanted.MinTimeP + 1);
    data.NAPoints(data.ShownRows());
    data.NDPoints(data.ShownRows() + 1);
    data.OrigNAPoints(data.ShownRows());
    for (const int column : wanted.columns)
        data.AddColumn(column);
}
