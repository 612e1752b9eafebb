// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "data/Moment.h"

#include <cstdint>
#include <string>

class clsFit;
class clsVeltData;

/// A new logged fit in `data`, made at the moment `now` gives once its name stands. A name that is empty or
/// all blanks is asked for, and asked for again as long as a fit has it already. \param whichMeth, fitOp
/// numbers of the model and of its error model \return null when the user gave no name; nothing has then
/// changed
clsFit* GetANewLog(clsVeltData& data, std::int32_t whichMeth, std::int32_t fitOp, std::string name,
                   const MomentSource& now = LocalNow);
