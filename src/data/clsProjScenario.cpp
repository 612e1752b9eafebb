// SPDX-License-Identifier: GPL-3.0-or-later
#include "data/clsProjScenario.h"

#include "base/Checked.h"

void clsProjScenario::Vector(int i, double value)
{
    m_vector(i) = checked::ToInt32(value);
    m_short(i) = false;
}

void clsProjScenario::Stored(int i, double value, bool isShort)
{
    Vector(i, value);
    m_short(i) = isShort;
}

void clsProjScenario::CalcPopTraj(std::span<const float> population)
{
    int i = 0;
    for (const float value : population)
        m_popTraj(++i) = value;
}
