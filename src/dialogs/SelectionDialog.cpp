// SPDX-License-Identifier: GPL-3.0-or-later
#include "dialogs/SelectionDialog.h"

#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>
#include <algorithm>

namespace
{
constexpr int kOK = 314; // the words of the other dialogs
constexpr int kCancel = 315;
constexpr int kFewestLines = 6;
constexpr int kMostLines = 16;
constexpr int kNarrowest = 34; // average characters
} // namespace

SelectionDialog::SelectionDialog(IUser& user, const Selection& selection, QWidget* parent)
    : FormDialog(user, QString::fromStdString(selection.caption), parent), m_list(new QListWidget)
{
    setObjectName("SelectionDialog");
    m_list->setObjectName("lstItems");
    for (const std::string& item : selection.items)
        m_list->addItem(QString::fromStdString(item));
    auto* prompt = new QLabel(QString::fromStdString(selection.prompt));
    prompt->setBuddy(m_list);
    Body()->addWidget(prompt);
    Body()->addWidget(m_list);

    const int lines = std::clamp(m_list->count(), kFewestLines, kMostLines);
    const int line = std::max(m_list->sizeHintForRow(0), fontMetrics().height());
    m_list->setFixedHeight(line * lines + 2 * m_list->frameWidth() + line / 2);
    m_list->setMinimumWidth(
        std::max(m_list->sizeHintForColumn(0) + 4 * line, fontMetrics().averageCharWidth() * kNarrowest));

    AddButtons(kOK, kCancel);
    auto* ok = findChild<QPushButton*>("cmdOK");
    connect(m_list, &QListWidget::itemDoubleClicked, this, &SelectionDialog::accept);
    connect(m_list, &QListWidget::currentRowChanged, ok, [ok](int row) { ok->setEnabled(row >= 0); });
    ok->setEnabled(false);
    m_list->setCurrentRow(selection.chosen > 0 ? static_cast<int>(selection.chosen) - 1 : 0);
    m_list->setFocus();
}

std::size_t SelectionDialog::Chosen() const
{
    return static_cast<std::size_t>(m_list->currentRow()) + 1;
}

bool SelectionDialog::Ask(IUser& user, Selection& selection, QWidget* parent)
{
    SelectionDialog form(user, selection, parent);
    if (form.exec() != QDialog::Accepted)
        return false;
    selection.chosen = form.Chosen();
    return true;
}
