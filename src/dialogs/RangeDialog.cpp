// SPDX-License-Identifier: GPL-3.0-or-later
#include "dialogs/RangeDialog.h"

#include "base/FieldRules.h"
#include "base/NumberText.h"
#include "base/StringTable.h"

#include <QFormLayout>
#include <QLabel>
#include <QVBoxLayout>

namespace
{
constexpr int kOK = 314; // the words of the other dialogs
constexpr int kCancel = 315;
constexpr int kDigits = 9;

Reading<double> ReadLevel(std::string_view typed)
{
    return field_rules::ReadNumber(
        typed, [](double) { return true; }, LoadResString(1927));
}
} // namespace

RangeDialog::RangeDialog(IUser& user, const RangeQuestion& question, QWidget* parent)
    : FormDialog(user, QString::fromStdString(question.caption), parent), m_record(question)
{
    setObjectName("RangeDialog");
    Body()->addWidget(new QLabel(QString::fromStdString(question.prompt)));
    auto* rows = new QFormLayout;
    rows->addRow(QString::fromStdString(question.lowLabel), AddLevel("txtLow", m_record.low));
    rows->addRow(QString::fromStdString(question.highLabel), AddLevel("txtHigh", m_record.high));
    Body()->addLayout(rows);
    AddButtons(kOK, kCancel);
}

EntryBox* RangeDialog::AddLevel(const char* name, double& value)
{
    // The levels are kept as 32-bit floats; more digits than those have would only be noise.
    const std::string shown = number_text::Plain(static_cast<float>(value));
    EntryBox* box = AddBox(name, kDigits, KeepGiven(value, shown, StoreIn<double>(value, ReadLevel)));
    box->setText(QString::fromStdString(shown));
    return box;
}

bool RangeDialog::Ask(IUser& user, RangeQuestion& question, QWidget* parent)
{
    RangeDialog form(user, question, parent);
    if (form.exec() != QDialog::Accepted)
        return false;
    question = form.Record();
    return true;
}
