// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "dialogs/FormDialog.h"
#include "fit/MinimiserOptions.h"

#include <array>

class QButtonGroup;
class QFormLayout;
class QPushButton;

/// Edits the settings of the minimiser and the number of bootstraps; it touches no setting itself.
class frmOptions : public FormDialog
{
    Q_OBJECT

public:
    frmOptions(IUser& user, const MinimiserOptions& options, QWidget* parent);

    const MinimiserOptions& Record() const { return m_record; }

    /// \return true for OK, `options` then holds what was entered
    static bool Ask(IUser& user, MinimiserOptions& options, QWidget* parent);

private:
    void BuildFields(QFormLayout* rows);
    void BuildChoice();
    void ShowRecord();
    void OnDefaults();
    void ShowWhetherDefaultsDiffer();
    void BoxTaken() override { ShowWhetherDefaultsDiffer(); }

    MinimiserOptions m_record;
    std::array<EntryBox*, 4> m_txtOption{}; ///< iterations, bootstraps, function and parameter tolerance
    QButtonGroup* m_optCO = nullptr;        ///< its ids are the values of ConvergeOn
    QPushButton* m_cmdDefault = nullptr;
};
