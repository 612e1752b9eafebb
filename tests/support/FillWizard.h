// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "data/Columns.h"
#include "files/AsciiWizard.h"

/// Text column 1 holds the years, 2 to 4 become Effort, Catch Nums and Tot. Catch Nums.
inline bool FillWizard(AsciiWizard& wizard)
{
    wizard.ChooseTiming(1);
    wizard.Next();
    wizard.Assign(2, columns::Effort);
    wizard.Assign(3, columns::CatchNums);
    wizard.Assign(4, columns::TotCatchNums);
    wizard.Finish();
    return true;
}
