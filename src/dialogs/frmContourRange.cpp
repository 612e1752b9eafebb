// SPDX-License-Identifier: GPL-3.0-or-later
#include "dialogs/frmContourRange.h"

#include "base/NumberText.h"
#include "toolkit/Words.h"

#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>

namespace
{
constexpr int kDigits = 18; // a 64-bit number with its exponent
constexpr int kPointDigits = 4;

std::string ShowPoints(std::int16_t points)
{
    return std::to_string(points);
}
} // namespace

frmContourRange::frmContourRange(IUser& user, const ContourRange& range, QWidget* parent)
    : FormDialog(user, Words(401), parent), m_record(range)
{
    setObjectName("frmContourRange");
    auto* frame = new QGroupBox(Words(402));
    auto* grid = new QGridLayout(frame);
    grid->addWidget(new QLabel(tr("Low")), 0, 1, Qt::AlignHCenter);
    grid->addWidget(new QLabel(tr("High")), 0, 2, Qt::AlignHCenter);
    m_txtP1Lo = AddBound("txtP1Lo", m_record.Param1Lo, range.Param1Name);
    grid->addWidget(new QLabel(QString::fromStdString(range.Param1Name)), 1, 0);
    grid->addWidget(m_txtP1Lo, 1, 1);
    grid->addWidget(AddBound("txtP1HI", m_record.Param1Hi, range.Param1Name), 1, 2);
    grid->addWidget(new QLabel(QString::fromStdString(range.Param2Name)), 2, 0);
    grid->addWidget(AddBound("txtP2Lo", m_record.Param2Lo, range.Param2Name), 2, 1);
    grid->addWidget(AddBound("txtP2Hi", m_record.Param2Hi, range.Param2Name), 2, 2);
    Body()->addWidget(frame);
    BuildPoints();
    AddButtons(404, 405);
}

bool frmContourRange::Ask(IUser& user, ContourRange& range, QWidget* parent)
{
    frmContourRange form(user, range, parent);
    if (form.exec() != QDialog::Accepted)
        return false;
    range = form.Record();
    return true;
}

EntryBox* frmContourRange::AddBound(const char* name, double& value, const std::string& parameter)
{
    const auto rule = StoreIn<double>(
        value, [parameter](std::string_view typed) { return ReadContourBound(typed, parameter); });
    const std::string offered = number_text::Plain(value);
    EntryBox* box = AddBox(name, kDigits, [&value, was = value, offered, rule](const std::string& typed) {
        if (typed != offered)
            return rule(typed);
        value = was; // what is offered is asked nothing, and stands to the bit
        return EntryBox::Verdict{true, typed};
    });
    box->setText(QString::fromStdString(offered));
    return box;
}

void frmContourRange::BuildPoints()
{
    EntryBox* box = AddBox("txtPoints", kPointDigits,
                           StoreIn<std::int16_t>(m_record.ContEvals, ReadContourPoints, ShowPoints));
    box->setText(QString::fromStdString(ShowPoints(m_record.ContEvals)));
    auto* caption = new QLabel(Words(403));
    caption->setBuddy(box);
    auto* row = new QHBoxLayout;
    row->addWidget(caption);
    row->addWidget(box);
    row->addStretch();
    Body()->addLayout(row);
}

bool frmContourRange::TakeForm()
{
    const auto refusal = RefuseContourRange(m_record);
    if (refusal)
        SayAt(m_txtP1Lo, *refusal);
    return !refusal;
}
