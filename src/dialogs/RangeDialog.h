// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/Ports.h"
#include "dialogs/FormDialog.h"

/// Takes two levels. It asks for numbers only; which levels make sense is the asker's business.
class RangeDialog : public FormDialog
{
    Q_OBJECT

public:
    RangeDialog(IUser& user, const RangeQuestion& question, QWidget* parent);

    const RangeQuestion& Record() const { return m_record; }

    /// \return true for OK, `question` then holds the levels entered
    static bool Ask(IUser& user, RangeQuestion& question, QWidget* parent);

private:
    EntryBox* AddLevel(const char* name, double& value);

    RangeQuestion m_record;
};
