// SPDX-License-Identifier: GPL-3.0-or-later
#include "fit/MinimiserOptions.h"

#include "base/FieldRules.h"
#include "base/StringTable.h"

namespace
{
constexpr double kMostBootstraps = 1000.0; // the length of the table of estimates

bool IsPositive(double value)
{
    return value > 0.0;
}
} // namespace

bool DiffersFromDefaults(const MinimiserOptions& options)
{
    return options != MinimiserOptions{};
}

Reading<std::int16_t> ReadMaxIterations(std::string_view typed)
{
    return field_rules::ReadInt16(typed, IsPositive, LoadResString(710));
}

Reading<std::int16_t> ReadBootstraps(std::string_view typed)
{
    return field_rules::ReadInt16(
        typed, [](double value) { return IsPositive(value) && value <= kMostBootstraps; },
        LoadResString(711));
}

Reading<float> ReadTolerance(std::string_view typed)
{
    return field_rules::ReadFloat(typed, IsPositive, LoadResString(710));
}
