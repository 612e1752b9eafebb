// SPDX-License-Identifier: GPL-3.0-or-later
#include "models/StartVals.h"

#include "base/FieldRules.h"
#include "base/StringTable.h"

Reading<double> ReadStartingValue(std::string_view typed)
{
    return field_rules::ReadNumber(
        typed, [](double value) { return value >= 0.0; }, LoadResString(1913));
}
