// SPDX-License-Identifier: GPL-3.0-or-later
#include "dialogs/frmNumberFormat.h"

#include "toolkit/Words.h"

#include <QGroupBox>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

namespace
{
constexpr int kFirstCategory = 601;
constexpr int kCategories = 3;
constexpr int kTitle = 604;
constexpr int kCategory = 605;
constexpr int kSample = 606;
constexpr int kDecimalPlaces = 607;
constexpr int kOK = 608;
constexpr int kCancel = 609;

QVBoxLayout* Under(int captionId, QListWidget* list, int lines)
{
    auto* column = new QVBoxLayout;
    auto* label = new QLabel(Words(captionId));
    label->setBuddy(list);
    list->setFixedHeight(lines * list->fontMetrics().height() * 5 / 4 + 2 * list->frameWidth());
    column->addWidget(label);
    column->addWidget(list);
    return column;
}
} // namespace

frmNumberFormat::frmNumberFormat(IUser& user, const NumberFormatChoice& choice, QWidget* parent)
    : FormDialog(user, Words(kTitle), parent), m_sample(choice.sample), m_lstFormat(new QListWidget),
      m_lstDecPlaces(new QListWidget), m_lblSample(new QLabel)
{
    constexpr int kLines = 8;
    setObjectName("frmNumberFormat");
    m_lstFormat->setObjectName("lstFormat");
    m_lstDecPlaces->setObjectName("lstDecPlaces");
    m_lblSample->setObjectName("lblSample");
    for (int category = 0; category < kCategories; ++category)
        m_lstFormat->addItem(Words(kFirstCategory + category));
    for (int places = 0; places <= kMostDecPlaces; ++places)
        m_lstDecPlaces->addItem(QString::number(places));
    auto* lists = new QHBoxLayout;
    lists->addLayout(Under(kCategory, m_lstFormat, kLines));
    lists->addLayout(Under(kDecimalPlaces, m_lstDecPlaces, kLines));
    Body()->addLayout(lists);

    constexpr int kWidestSample = 42; // characters, -3.4E+38 with its 15 places would be 57
    auto* frame = new QGroupBox(Words(kSample));
    auto* inside = new QVBoxLayout(frame);
    m_lblSample->setAlignment(Qt::AlignCenter);
    m_lblSample->setTextInteractionFlags(Qt::TextSelectableByMouse);
    m_lblSample->setMinimumWidth(kWidestSample * fontMetrics().averageCharWidth());
    inside->addWidget(m_lblSample);
    Body()->addWidget(frame);
    AddButtons(kOK, kCancel);

    m_lstFormat->setCurrentRow(static_cast<int>(choice.category) - 1);
    m_lstDecPlaces->setCurrentRow(choice.decPlaces);
    connect(m_lstFormat, &QListWidget::currentRowChanged, this, &frmNumberFormat::ShowSample);
    connect(m_lstDecPlaces, &QListWidget::currentRowChanged, this, &frmNumberFormat::ShowSample);
    m_lstFormat->setFocus();
    ShowSample();
}

NumberFormatChoice frmNumberFormat::Choice() const
{
    return {.category = static_cast<NumberCategory>(m_lstFormat->currentRow() + 1),
            .decPlaces = m_lstDecPlaces->currentRow(),
            .sample = m_sample};
}

void frmNumberFormat::ShowSample()
{
    const NumberFormatChoice chosen = Choice();
    const bool complete = chosen.category != NumberCategory::None && chosen.decPlaces >= 0;
    findChild<QPushButton*>("cmdOK")->setEnabled(complete);
    m_lblSample->setText(complete ? QString::fromStdString(
                                        FormatNumber(m_sample, FormatText(chosen.category, chosen.decPlaces)))
                                  : QString());
}

bool frmNumberFormat::Ask(IUser& user, NumberFormatChoice& choice, QWidget* parent)
{
    frmNumberFormat form(user, choice, parent);
    if (form.exec() != QDialog::Accepted)
        return false;
    choice = form.Choice();
    return true;
}
