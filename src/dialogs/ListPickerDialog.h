// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/Ports.h"
#include "dialogs/FormDialog.h"

class TwoLists;

/// Any number of choices out of a list.
class ListPickerDialog : public FormDialog
{
    Q_OBJECT

public:
    ListPickerDialog(IUser& user, const ListPicker& picker, QWidget* parent);

    /// \return true for OK, the items of `picker` then say which are selected
    static bool Ask(IUser& user, ListPicker& picker, QWidget* parent);

private:
    TwoLists* m_lists;
};
