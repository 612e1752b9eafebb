// SPDX-License-Identifier: GPL-3.0-or-later
// What the rules of the dialogs' fields share: a typed text becomes the value as it will be stored, or the
// sentence of the field.
#pragma once

#include "base/NumberText.h"
#include "base/Reading.h"

#include <cmath>
#include <cstdint>
#include <limits>
#include <string>
#include <string_view>

namespace field_rules
{

/// The number typed, when `accept` takes it.
template <typename Accept>
Reading<double> ReadNumber(std::string_view typed, Accept accept, const std::string& sentence)
{
    const auto value = number_text::ParseTyped(typed);
    if (!value || !accept(*value))
        return sentence;
    return *value;
}

/// The number typed as a 32-bit float. `accept` is asked before and after the narrowing, so that neither
/// 1 + 1E-12 passes as 1 nor 1E-60 as something above 0.
template <typename Accept>
Reading<float> ReadFloat(std::string_view typed, Accept accept, const std::string& sentence)
{
    const auto value = number_text::ParseTyped(typed);
    if (!value || std::fabs(*value) > static_cast<double>(std::numeric_limits<float>::max()))
        return sentence;
    const float stored = static_cast<float>(*value);
    if (!accept(*value) || !accept(static_cast<double>(stored)))
        return sentence;
    return stored;
}

/// The number typed as a whole number of 16 bits, rounded with ties to even. `accept` is asked before and
/// after the rounding.
template <typename Accept>
Reading<std::int16_t> ReadInt16(std::string_view typed, Accept accept, const std::string& sentence)
{
    const auto value = number_text::ParseTyped(typed);
    if (!value)
        return sentence;
    const double whole = std::nearbyint(*value); // the default rounding mode: ties to even
    if (std::fabs(whole) > std::numeric_limits<std::int16_t>::max() || !accept(*value) || !accept(whole))
        return sentence;
    return static_cast<std::int16_t>(whole);
}

} // namespace field_rules
