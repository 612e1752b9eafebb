// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "dialogs/FormDialog.h"
#include "models/StartVals.h"

class QCheckBox;
class QGridLayout;

/// Takes the starting values of a two-parameter model, each of which may be held fixed.
class frmStartVals : public FormDialog
{
    Q_OBJECT

public:
    frmStartVals(IUser& user, const StartVals& starts, QWidget* parent);

    const StartVals& Record() const { return m_record; }

    /// \return true for OK, `starts` then holds what was entered
    static bool Ask(IUser& user, StartVals& starts, QWidget* parent);

private:
    QCheckBox* AddParameter(QGridLayout* grid, int row, const std::string& name, double& value, bool fixed);
    bool TakeForm() override;

    StartVals m_record;
    QCheckBox* m_chkParam1 = nullptr;
    QCheckBox* m_chkParam2 = nullptr;
};
