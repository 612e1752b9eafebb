// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "dialogs/FormDialog.h"
#include "models/ContourRange.h"

class QGridLayout;

/// Takes the ranges of a likelihood surface and the number of points along its axes.
class frmContourRange : public FormDialog
{
    Q_OBJECT

public:
    frmContourRange(IUser& user, const ContourRange& range, QWidget* parent);

    const ContourRange& Record() const { return m_record; }

    /// \return true for OK, `range` then holds what was entered
    static bool Ask(IUser& user, ContourRange& range, QWidget* parent);

private:
    EntryBox* AddBound(const char* name, double& value, const std::string& parameter);
    void BuildPoints();
    bool TakeForm() override;

    ContourRange m_record;
    EntryBox* m_txtP1Lo = nullptr;
};
