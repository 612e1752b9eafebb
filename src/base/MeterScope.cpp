// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/MeterScope.h"

#include "base/VeltError.h"

void MeterScope::Done(int value, const std::string& source)
{
    if (m_meter.Cancelled())
        throw UserCancelled(source);
    m_meter.Value(value);
}
