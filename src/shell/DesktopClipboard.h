// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/Ports.h"

/// The system's clipboard. A block of cells goes there as text as it is displayed; as a table for
/// spreadsheets and word processors, whose cells carry the exact values; and in a format of the program's
/// own, from which it pastes to the bit.
class DesktopClipboard : public IClipboard
{
public:
    bool HasText() const override;
    std::string Text() const override;
    void Text(const std::string& text) override;
    void Block(const std::string& displayed, const std::string& exact) override;
};
