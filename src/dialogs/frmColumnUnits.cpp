// SPDX-License-Identifier: GPL-3.0-or-later
#include "dialogs/frmColumnUnits.h"

#include "base/Text.h"

#include <QFormLayout>
#include <QLabel>
#include <QVBoxLayout>

namespace
{
constexpr int kOK = 608;
constexpr int kCancel = 609;
} // namespace

frmColumnUnits::frmColumnUnits(IUser& user, std::vector<ColumnUnit> rows, QWidget* parent)
    : FormDialog(user, tr("Column Units"), parent), m_rows(std::move(rows))
{
    setObjectName("frmColumnUnits");
    auto* what = new QLabel(tr("The units stand beside the titles of the graphs' axes, as t, boat days or\n"
                               "1000 fish. A ratio of two columns takes both. They change no number.\n\n"
                               "This computer keeps them for this project; the project file has no room\n"
                               "for them."));
    Body()->addWidget(what);
    auto* form = new QFormLayout;
    for (ColumnUnit& row : m_rows) {
        const QByteArray name = "txtUnit" + QByteArray::number(row.column);
        EntryBox* box = AddBox(name.constData(), kMostCharacters, [&row](const std::string& typed) {
            row.unit = Trim(typed);
            return EntryBox::Verdict{true, row.unit};
        });
        box->setMaxLength(kMostCharacters);
        box->setText(QString::fromStdString(row.unit));
        form->addRow(QString::fromStdString(row.title) + ':', box);
    }
    Body()->addLayout(form);
    AddButtons(kOK, kCancel);
}

bool frmColumnUnits::Ask(IUser& user, std::vector<ColumnUnit>& rows, QWidget* parent)
{
    frmColumnUnits form(user, rows, parent);
    if (form.exec() != QDialog::Accepted)
        return false;
    rows = form.Rows();
    return true;
}
