// SPDX-License-Identifier: GPL-3.0-or-later
#include "data/TypedNumber.h"

std::string RefusalOfNumber(const std::string& text, const std::string& tooLarge)
{
    std::string refusal = "Data must be numeric.";
    if (number_text::ParseTyped(text))
        refusal += "\n\nThe value is too large: " + tooLarge;
    else if (text.find(',') != std::string::npos)
        refusal += "\n\nThe decimal sign is a point.";
    return refusal;
}
