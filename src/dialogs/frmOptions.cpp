// SPDX-License-Identifier: GPL-3.0-or-later
#include "dialogs/frmOptions.h"

#include "base/HelpTopics.h"
#include "base/NumberText.h"
#include "base/modVeltGlobals.h"
#include "toolkit/Words.h"

#include <QButtonGroup>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

namespace
{
constexpr int kDigits = 12;

std::string ShowWhole(std::int16_t value)
{
    return std::to_string(value);
}

std::string ShowTolerance(float value)
{
    return number_text::Plain(value);
}
} // namespace

frmOptions::frmOptions(IUser& user, const MinimiserOptions& options, QWidget* parent)
    : FormDialog(user, Words(701), parent), m_record(options)
{
    setObjectName("frmOptions");
    auto* frame = new QGroupBox(Words(702));
    BuildFields(new QFormLayout(frame));
    Body()->addWidget(frame);
    BuildChoice();
    AddButtons(707, 708);
    m_cmdDefault = ButtonRow()->addButton(Words(709), QDialogButtonBox::ResetRole);
    m_cmdDefault->setObjectName("cmdDefault");
    m_cmdDefault->setAutoDefault(false); // Enter in a field is OK and never throws the entries away
    connect(m_cmdDefault, &QPushButton::clicked, this, &frmOptions::OnDefaults);
    AddHelpButton(help_topics::kOptions);
    ShowRecord();
}

bool frmOptions::Ask(IUser& user, MinimiserOptions& options, QWidget* parent)
{
    frmOptions form(user, options, parent);
    if (form.exec() != QDialog::Accepted)
        return false;
    options = form.Record();
    return true;
}

void frmOptions::BuildFields(QFormLayout* rows)
{
    m_txtOption = {
        AddBox("txtOption0", kDigits,
               StoreIn<std::int16_t>(m_record.intMaxIts, ReadMaxIterations, ShowWhole)),
        AddBox("txtOption1", kDigits, StoreIn<std::int16_t>(m_record.BS, ReadBootstraps, ShowWhole)),
        AddBox("txtOption2", kDigits, StoreIn<float>(m_record.sngFTOL, ReadTolerance, ShowTolerance)),
        AddBox("txtOption3", kDigits, StoreIn<float>(m_record.sngXTOL, ReadTolerance, ShowTolerance))};
    int captionId = 703;
    for (EntryBox* box : m_txtOption)
        rows->addRow(Words(captionId++), box);
}

void frmOptions::BuildChoice()
{
    auto* frame = new QGroupBox(Words(712));
    auto* column = new QVBoxLayout(frame);
    auto* either = new QRadioButton(Words(713));
    either->setObjectName("optCO0");
    auto* both = new QRadioButton(Words(714));
    both->setObjectName("optCO1");
    column->addWidget(either);
    column->addWidget(both);
    Body()->addWidget(frame);

    m_optCO = new QButtonGroup(this);
    m_optCO->addButton(either, modVeltGlobals::kConvergeOnEither);
    m_optCO->addButton(both, modVeltGlobals::kConvergeOnBoth);
    connect(m_optCO, &QButtonGroup::idClicked, this, [this](int rule) {
        m_record.ConvergeOn = rule;
        ShowWhetherDefaultsDiffer();
    });
}

void frmOptions::ShowRecord()
{
    const std::array<std::string, 4> texts{ShowWhole(m_record.intMaxIts), ShowWhole(m_record.BS),
                                           ShowTolerance(m_record.sngFTOL), ShowTolerance(m_record.sngXTOL)};
    for (std::size_t i = 0; i < texts.size(); ++i)
        m_txtOption[i]->setText(QString::fromStdString(texts[i]));
    const bool either = m_record.ConvergeOn == modVeltGlobals::kConvergeOnEither;
    m_optCO->button(either ? modVeltGlobals::kConvergeOnEither : modVeltGlobals::kConvergeOnBoth)
        ->setChecked(true);
    ShowWhetherDefaultsDiffer();
}

void frmOptions::OnDefaults()
{
    m_record = MinimiserOptions{};
    ShowRecord();
    m_txtOption[0]->setFocus(); // the button itself has just been disabled
}

void frmOptions::ShowWhetherDefaultsDiffer()
{
    m_cmdDefault->setEnabled(DiffersFromDefaults(m_record));
}
