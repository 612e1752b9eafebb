// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/NumberText.h"
#include "base/VeltError.h"

#include <optional>
#include <string>

/// The number of a typed text as a cell stores it; nothing for a text that is none, and for a number that
/// `narrow` refuses as too large for the cell.
template <typename Narrow>
auto TypedNumber(const std::string& text, Narrow narrow) -> std::optional<decltype(narrow(0.0))>
{
    const auto number = number_text::ParseTyped(text);
    if (!number)
        return std::nullopt;
    try {
        return narrow(*number);
    } catch (const VeltError&) {
        return std::nullopt;
    }
}

/// What the user is told about a text that TypedNumber does not take. \param tooLarge what a cell holds, for
/// a number
std::string RefusalOfNumber(const std::string& text, const std::string& tooLarge);
