// SPDX-License-Identifier: GPL-3.0-or-later
#include "data/clsFit.h"

#include "base/Text.h"

#include <cmath>

void clsFit::FitName(std::string_view name)
{
    m_fitName = PadString(name, kNameWidth);
}

void clsFit::Create(std::string_view name, double moment)
{
    FitName(name);
    SetDateAndTime(moment);
    m_deleted = false;
}

void clsFit::SetDateAndTime(double moment)
{
    m_theDate = std::floor(moment);
    m_theTime = moment - m_theDate;
}
