// SPDX-License-Identifier: GPL-3.0-or-later
#include "dialogs/frmInputParams.h"

#include "base/NumberText.h"
#include "base/Text.h"
#include "models/IMethod.h"
#include "toolkit/Words.h"

#include <QCheckBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QRadioButton>
#include <QVBoxLayout>

namespace
{
constexpr int kDigits = 9;

std::string ShowLag(std::int16_t lag)
{
    return std::to_string(lag);
}

/// The rule of a box that was given the plain text of `value`.
EntryBox::Rule StoreNumber(float& value, std::function<Reading<float>(std::string_view)> read)
{
    return KeepGiven(value, number_text::Plain(value), StoreIn<float>(value, std::move(read)));
}
} // namespace

frmInputParams::frmInputParams(IUser& user, const InputParams& params, QWidget* parent)
    : FormDialog(user, Words(301), parent), m_record(params)
{
    setObjectName("frmInputParams");
    const std::string model = Trim(params.modelTitle); // padded in the string table
    if (!model.empty())
        setWindowTitle(QString::fromStdString(model));
    BuildInputs();
    BuildErrorModels();
    BuildSwitches();
    AddButtons(314, 315);
    FitFieldsToModel();
}

bool frmInputParams::Ask(IUser& user, InputParams& params, QWidget* parent)
{
    frmInputParams form(user, params, parent);
    if (form.exec() != QDialog::Accepted)
        return false;
    params = form.Record();
    return true;
}

EntryBox* frmInputParams::AddInput(const char* box, const char* label, int captionId, const QString& unit,
                                   const std::string& value, EntryBox::Rule rule)
{
    EntryBox* entry = AddBox(box, kDigits, std::move(rule));
    entry->setText(QString::fromStdString(value));
    auto* field = new QWidget;
    auto* row = new QHBoxLayout(field);
    row->setContentsMargins(0, 0, 0, 0);
    row->addWidget(entry);
    row->addWidget(new QLabel(unit));
    row->addStretch();
    auto* caption = new QLabel(Words(captionId));
    caption->setObjectName(QString::fromLatin1(label));
    caption->setBuddy(entry);
    m_inputs->addRow(caption, field);
    return entry;
}

void frmInputParams::BuildInputs()
{
    m_inputs = new QFormLayout;
    Body()->addLayout(m_inputs);
    using number_text::Plain;
    m_txtInitProp = AddInput("txtInitProp", "lblInitProp", 302, tr("0 to 1"), Plain(m_record.InitProp),
                             StoreNumber(m_record.InitProp, ReadInitialProportion));
    m_txtLag = AddInput("txtLag", "lblLag", 303, tr("periods of lag"), ShowLag(m_record.TimeLag),
                        StoreIn<std::int16_t>(m_record.TimeLag, ReadTimeLag, ShowLag));
    m_txtZ = AddInput("txtZ", "lblZ", 304, {}, Plain(m_record.Z), StoreNumber(m_record.Z, ReadZShape));
    m_txtMort = AddInput("txtMort", "lblMort", 305, tr("per period"), Plain(m_record.Mort),
                         StoreNumber(m_record.Mort, ReadNaturalMortality));
}

void frmInputParams::BuildErrorModels()
{
    struct Option {
        const char* name;
        int captionId;
        std::int32_t fitOp;
    };
    auto* frame = new QGroupBox(Words(306));
    frame->setObjectName("fmeError");
    auto* column = new QVBoxLayout(frame);
    for (const Option& option :
         {Option{"optLSQ", 307, fit_op::kLeastSquares}, Option{"optLogT", 308, fit_op::kLog},
          Option{"optGamma", 309, fit_op::kGamma}, Option{"optLSQW", 310, fit_op::kWeightedLeastSquares}}) {
        auto* button = new QRadioButton(Words(option.captionId));
        button->setObjectName(QString::fromLatin1(option.name));
        button->setChecked(option.fitOp == m_record.FitOp);
        connect(button, &QRadioButton::toggled, this, [this, fitOp = option.fitOp](bool on) {
            if (on)
                Choose(fitOp);
        });
        column->addWidget(button);
        if (option.fitOp == fit_op::kWeightedLeastSquares)
            m_optLSQW = button;
    }
    Body()->addWidget(frame);
}

void frmInputParams::BuildSwitches()
{
    auto* frame = new QGroupBox(Words(311));
    frame->setObjectName("fmeOptions");
    auto* column = new QVBoxLayout(frame);
    m_chkSetMan = new QCheckBox(Words(312));
    m_chkSetMan->setObjectName("chkSetMan");
    m_chkSetMan->setChecked(m_record.SetStartingEstimates);
    m_chkViewMin = new QCheckBox(Words(313));
    m_chkViewMin->setObjectName("chkViewMin");
    m_chkViewMin->setChecked(m_record.PlotEvaluations);
    column->addWidget(m_chkSetMan);
    column->addWidget(m_chkViewMin);
    Body()->addWidget(frame);
}

void frmInputParams::Choose(std::int32_t fitOp)
{
    m_record.FitOp = fitOp;
    FitFieldsToModel();
}

void frmInputParams::FitFieldsToModel()
{
    const InputFields fields = FieldsOf(m_record);
    m_inputs->setRowVisible(m_txtMort->parentWidget(), fields.mort);
    m_inputs->setRowVisible(m_txtInitProp->parentWidget(), fields.initProp);
    m_inputs->setRowVisible(m_txtLag->parentWidget(), fields.lag);
    m_inputs->setRowVisible(m_txtZ->parentWidget(), fields.z);
    m_optLSQW->setEnabled(fields.weightedEnabled);
    m_chkViewMin->setVisible(fields.viewMinShown);
    m_chkViewMin->setEnabled(fields.viewMinEnabled);
    m_chkSetMan->setEnabled(fields.setManEnabled);
    if (!fields.setManEnabled) { // a regression has no minimisation to start or to watch
        m_chkSetMan->setChecked(false);
        m_chkViewMin->setChecked(false);
    }
}

bool frmInputParams::TakeForm()
{
    m_record.PlotEvaluations = m_chkViewMin->isChecked();
    m_record.SetStartingEstimates = m_chkSetMan->isChecked();
    return true;
}
