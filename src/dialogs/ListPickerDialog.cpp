// SPDX-License-Identifier: GPL-3.0-or-later
#include "dialogs/ListPickerDialog.h"

#include "dialogs/TwoLists.h"

#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace
{
constexpr int kOK = 314; // the words of the other dialogs
constexpr int kCancel = 315;

std::vector<TwoLists::Item> ItemsOf(const ListPicker& picker)
{
    std::vector<TwoLists::Item> items;
    for (const ListPicker::Item& item : picker.items)
        items.push_back({QString::fromStdString(item.text), item.selected});
    return items;
}
} // namespace

ListPickerDialog::ListPickerDialog(IUser& user, const ListPicker& picker, QWidget* parent)
    : FormDialog(user, QString::fromStdString(picker.caption), parent),
      m_lists(new TwoLists(QString::fromStdString(picker.leftCaption),
                           QString::fromStdString(picker.rightCaption), ItemsOf(picker)))
{
    setObjectName("ListPickerDialog");
    Body()->addWidget(new QLabel(QString::fromStdString(picker.prompt)));
    Body()->addWidget(m_lists);
    AddButtons(kOK, kCancel);
    auto* ok = findChild<QPushButton*>("cmdOK");
    const auto follow = [this, ok] { ok->setEnabled(m_lists->AnySelected()); };
    connect(m_lists, &TwoLists::Moved, ok, follow); // nothing would come of none
    follow();
    m_lists->setFocus();
}

bool ListPickerDialog::Ask(IUser& user, ListPicker& picker, QWidget* parent)
{
    ListPickerDialog form(user, picker, parent);
    if (form.exec() != QDialog::Accepted)
        return false;
    const std::vector<bool> selected = form.m_lists->Selected();
    for (std::size_t i = 0; i < selected.size(); ++i)
        picker.items[i].selected = selected[i];
    return true;
}
