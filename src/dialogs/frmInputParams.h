// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "dialogs/FormDialog.h"
#include "fit/InputParams.h"

class QCheckBox;
class QFormLayout;
class QRadioButton;

/// Collects, just before a fit, the error model, the fixed inputs of the model and two switches.
class frmInputParams : public FormDialog
{
    Q_OBJECT

public:
    frmInputParams(IUser& user, const InputParams& params, QWidget* parent);

    const InputParams& Record() const { return m_record; }

    /// \return true for OK, `params` then holds what was entered
    static bool Ask(IUser& user, InputParams& params, QWidget* parent);

private:
    void BuildInputs();
    void BuildErrorModels();
    void BuildSwitches();
    EntryBox* AddInput(const char* box, const char* label, int captionId, const QString& unit,
                       const std::string& value, EntryBox::Rule rule);
    void Choose(std::int32_t fitOp);
    void FitFieldsToModel();
    bool TakeForm() override;

    InputParams m_record;
    QFormLayout* m_inputs = nullptr;
    EntryBox* m_txtMort = nullptr;
    EntryBox* m_txtInitProp = nullptr;
    EntryBox* m_txtLag = nullptr;
    EntryBox* m_txtZ = nullptr;
    QRadioButton* m_optLSQW = nullptr;
    QCheckBox* m_chkSetMan = nullptr;
    QCheckBox* m_chkViewMin = nullptr;
};
