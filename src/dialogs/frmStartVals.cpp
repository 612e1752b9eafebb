// SPDX-License-Identifier: GPL-3.0-or-later
#include "dialogs/frmStartVals.h"

#include "base/NumberText.h"
#include "toolkit/Words.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QVBoxLayout>

namespace
{
constexpr int kDigits = 18; // a 64-bit number with its exponent
}

frmStartVals::frmStartVals(IUser& user, const StartVals& starts, QWidget* parent)
    : FormDialog(user, Words(1101), parent), m_record(starts)
{
    setObjectName("frmStartVals");
    auto* frame = new QGroupBox(Words(1102));
    auto* grid = new QGridLayout(frame);
    m_chkParam1 = AddParameter(grid, 1, starts.Param1Name, m_record.param1, starts.Fixed1);
    m_chkParam2 = AddParameter(grid, 2, starts.Param2Name, m_record.param2, starts.Fixed2);
    Body()->addWidget(frame);
    AddButtons(1104, 1105);
}

bool frmStartVals::Ask(IUser& user, StartVals& starts, QWidget* parent)
{
    frmStartVals form(user, starts, parent);
    if (form.exec() != QDialog::Accepted)
        return false;
    starts = form.Record();
    return true;
}

QCheckBox* frmStartVals::AddParameter(QGridLayout* grid, int row, const std::string& name, double& value,
                                      bool fixed)
{
    const QString number = QString::number(row);
    const std::string shown = number_text::Plain(value);
    EntryBox* box = AddBox(("txtParam" + number).toLatin1(), kDigits,
                           KeepGiven(value, shown, StoreIn<double>(value, ReadStartingValue)));
    box->setText(QString::fromStdString(shown));
    auto* caption = new QLabel(QString::fromStdString(name));
    caption->setBuddy(box);
    auto* check = new QCheckBox(Words(1103));
    check->setObjectName("chkParam" + number);
    check->setChecked(fixed);
    grid->addWidget(caption, row, 0);
    grid->addWidget(box, row, 1);
    grid->addWidget(check, row, 2);
    return check;
}

bool frmStartVals::TakeForm()
{
    m_record.Fixed1 = m_chkParam1->isChecked();
    m_record.Fixed2 = m_chkParam2->isChecked();
    return true;
}
