// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/Ports.h"

/// A stretch of metered work: the meter goes away when the work ends, however it ends.
class MeterScope
{
public:
    MeterScope(IProgressMeter& meter, const std::string& title, int maximum) : m_meter(meter)
    {
        m_meter.Start(title, maximum);
    }
    ~MeterScope() { m_meter.Finish(); }
    MeterScope(const MeterScope&) = delete;
    MeterScope& operator=(const MeterScope&) = delete;

    /// Shows that step `value` is done. \throws VeltError 2263 with `source` when the user cancelled
    void Done(int value, const std::string& source);

private:
    IProgressMeter& m_meter;
};
