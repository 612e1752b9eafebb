// SPDX-License-Identifier: GPL-3.0-or-later
#include "dialogs/frmNewFile.h"

#include "base/HelpTopics.h"
#include "data/GridTitle.h"
#include "data/clsVeltData.h"
#include "dialogs/TwoLists.h"
#include "toolkit/Words.h"

#include <QFormLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QVBoxLayout>

namespace
{
constexpr int kUnselected = 52;
constexpr int kSelected = 53;
constexpr int kTitle = 101;
constexpr int kDetails = 102;
constexpr int kFileName = 103;
constexpr int kDescription = 104;
constexpr int kTimePeriod = 105;
constexpr int kMin = 106;
constexpr int kMax = 107;
constexpr int kColumns = 108;
constexpr int kOK = 109;
constexpr int kCancel = 110;
constexpr int kNoColumn = 1919;
constexpr int kDigits = 10;
} // namespace

frmNewFile::frmNewFile(IUser& user, QWidget* parent) : FormDialog(user, Words(kTitle), parent), m_user(user)
{
    setObjectName("frmNewFile");
    Body()->addWidget(Details());
    Body()->addWidget(Columns());
    AddButtons(kOK, kCancel);
    AddHelpButton(help_topics::kNewDataSet);
    SayWithHelp(help_topics::kNewDataSet);
    m_txtDescription->setFocus();
}

QWidget* frmNewFile::Details()
{
    auto* frame = new QGroupBox(Words(kDetails));
    auto* rows = new QFormLayout(frame);
    // The design of the form has a line for the name; it is asked for when the data set is saved.
    auto* later = new QLabel(tr("asked for when the data set is saved"));
    later->setForegroundRole(QPalette::PlaceholderText);
    rows->addRow(Words(kFileName), later);
    m_txtDescription = new QLineEdit;
    m_txtDescription->setObjectName("txtDescription");
    m_txtDescription->setMaxLength(static_cast<int>(clsVeltData::kDescriptionWidth));
    rows->addRow(Words(kDescription), m_txtDescription);

    m_txtMin = AddBox("TxtTimeP0", kDigits, StoreIn<std::int32_t>(m_record.MinTimeP, ReadTimePeriod));
    m_txtMax = AddBox("TxtTimeP1", kDigits, StoreIn<std::int32_t>(m_record.MaxTimeP, ReadTimePeriod));
    auto* range = new QHBoxLayout;
    for (const auto& [caption, box] : {std::pair(kMin, m_txtMin), std::pair(kMax, m_txtMax)}) {
        auto* label = new QLabel(Words(caption));
        label->setBuddy(box);
        range->addWidget(label);
        range->addWidget(box);
    }
    range->addStretch();
    rows->addRow(Words(kTimePeriod), range);
    return frame;
}

QWidget* frmNewFile::Columns()
{
    auto* frame = new QGroupBox(Words(kColumns));
    auto* inside = new QVBoxLayout(frame);
    std::vector<TwoLists::Item> titles;
    for (int column = columns::kFirst; column <= columns::kLastUser; ++column)
        titles.push_back({QString::fromStdString(GridTitle(column))});
    m_lists = new TwoLists(Words(kUnselected), Words(kSelected), titles);
    inside->addWidget(m_lists);
    return frame;
}

bool frmNewFile::TakeForm()
{
    if (const auto refusal = RefusalOfRange(m_txtMin->text().toStdString(), m_txtMax->text().toStdString())) {
        SayAt(m_txtMin, *refusal);
        return false;
    }
    m_record.columns.clear();
    const std::vector<bool> selected = m_lists->Selected();
    for (std::size_t i = 0; i < selected.size(); ++i)
        if (selected[i])
            m_record.columns.push_back(columns::kFirst + static_cast<int>(i));
    if (m_record.columns.empty()) {
        m_user.Show({.text = LoadResString(kNoColumn)});
        m_lists->setFocus();
        return false;
    }
    m_record.FileDescription = m_txtDescription->text().toStdString();
    return true;
}

bool frmNewFile::Ask(IUser& user, NewDataSet& wanted, QWidget* parent)
{
    frmNewFile form(user, parent);
    if (form.exec() != QDialog::Accepted)
        return false;
    wanted = form.Record();
    return true;
}
