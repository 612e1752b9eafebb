// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "data/NewDataSet.h"
#include "dialogs/FormDialog.h"

class QLineEdit;
class TwoLists;

/// Asks what a new data set begins with: a description, the range of its periods and its columns.
class frmNewFile : public FormDialog
{
    Q_OBJECT

public:
    frmNewFile(IUser& user, QWidget* parent);

    const NewDataSet& Record() const { return m_record; }

    /// \return true for OK, `wanted` then holds what was entered
    static bool Ask(IUser& user, NewDataSet& wanted, QWidget* parent);

private:
    QWidget* Details();
    QWidget* Columns();
    bool TakeForm() override;

    IUser& m_user;
    NewDataSet m_record;
    QLineEdit* m_txtDescription = nullptr;
    EntryBox* m_txtMin = nullptr;
    EntryBox* m_txtMax = nullptr;
    TwoLists* m_lists = nullptr;
};
