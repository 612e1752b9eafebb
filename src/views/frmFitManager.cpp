// SPDX-License-Identifier: GPL-3.0-or-later
#include "views/frmFitManager.h"

#include "base/Text.h"
#include "toolkit/Words.h"

#include <QDateTime>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QLocale>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QTableWidget>
#include <QVBoxLayout>

#include <array>
#include <cmath>

namespace
{
constexpr int kTitle = 501;
constexpr int kLoad = 503;
constexpr int kDelete = 504;
constexpr int kAdd = 505;
constexpr int kOK = 506;
constexpr int kHelp = 1955;
constexpr int kFitMenu = 32;
constexpr int kSavedFits = 510;
constexpr int kThereAre = 511;
constexpr int kFirstModel = 1812;
constexpr int kModels = 6;
constexpr int kFirstFitOp = 1818;
constexpr int kFitOps = 4;
constexpr std::array<int, 5> kHeads{1871, 1869, 1868, 1870, 1877}; // name, model, fit, date, time

/// Text `number` of a block that begins at `first`; nothing for a number that the block does not have.
QString OneOf(int first, int count, int number)
{
    return number >= 1 && number <= count ? Words(first + number - 1).trimmed() : QString();
}

/// The day of a date in days since 1899-12-30; blank for one that no calendar has.
QString DayText(double days)
{
    constexpr double kFirstDay = -657434.0; // 0100-01-01
    constexpr double kLastDay = 2958465.0;  // 9999-12-31
    if (!(days >= kFirstDay && days < kLastDay + 1.0))
        return {};
    const QDate day = QDate(1899, 12, 30).addDays(static_cast<qint64>(std::floor(days)));
    return QLocale().toString(day, QLocale::ShortFormat);
}

/// The time of day of a date; blank for an impossible one.
QString TimeText(double days)
{
    constexpr double kSecondsPerDay = 86400.0;
    const double fraction = days - std::floor(days);
    if (!std::isfinite(fraction))
        return {};
    const int seconds = std::min(static_cast<int>(std::lround(fraction * kSecondsPerDay)), 86399);
    return QLocale().toString(QTime(0, 0).addSecs(seconds), QLocale::ShortFormat);
}
} // namespace

frmFitManager::frmFitManager(QWidget* parent)
    : QWidget(parent, Qt::Window), m_lblMsg(new QLabel), m_grdFits(new QTableWidget(0, kHeads.size()))
{
    setObjectName("frmFitManager");
    setWindowTitle(Words(kTitle));
    m_lblMsg->setObjectName("lblMsg");
    m_grdFits->setObjectName("grdFits");
    m_grdFits->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_grdFits->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_grdFits->setSelectionMode(QAbstractItemView::SingleSelection);
    m_grdFits->setTabKeyNavigation(false);
    m_grdFits->verticalHeader()->hide();
    m_grdFits->horizontalHeader()->setHighlightSections(false);
    m_grdFits->horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
    QStringList heads;
    for (const int id : kHeads)
        heads += Words(id);
    m_grdFits->setHorizontalHeaderLabels(heads);
    auto* column = new QVBoxLayout(this);
    column->addWidget(m_lblMsg);
    column->addWidget(m_grdFits, 1);
    BuildButtons();
    connect(m_grdFits, &QTableWidget::cellDoubleClicked, m_cmdLoad, &QPushButton::click);
    const int em = fontMetrics().height();
    resize(62 * em, 18 * em); // room for a model's title in a fifth of it
    m_grdFits->setFocus();
}

void frmFitManager::BuildButtons()
{
    auto* row = new QHBoxLayout;
    const auto add = [&](int captionId, const char* name) {
        auto* button = new QPushButton(Words(captionId));
        button->setObjectName(QString::fromLatin1(name));
        row->addWidget(button);
        return button;
    };
    m_cmdLoad = add(kLoad, "cmdLoad");
    m_cmdDelete = add(kDelete, "cmdDelete");
    m_cmdAdd = add(kAdd, "cmdAdd");
    row->addStretch();
    QPushButton* exit = add(kOK, "cmdExit");
    connect(add(kHelp, "cmdHelp"), &QPushButton::clicked, this, &frmFitManager::HelpAsked);
    qobject_cast<QVBoxLayout*>(layout())->addLayout(row);
    connect(m_cmdLoad, &QPushButton::clicked, this, [this] { emit LoadAsked(CurrentName()); });
    connect(m_cmdDelete, &QPushButton::clicked, this,
            [this] { emit DeleteAsked(m_grdFits->currentRow() + 1); });
    connect(m_cmdAdd, &QPushButton::clicked, this, &frmFitManager::AddAsked);
    connect(exit, &QPushButton::clicked, this, &QWidget::hide);

    // A menu that repeats the buttons.
    auto* bar = new QMenuBar;
    auto* menu = bar->addMenu(Words(kFitMenu));
    menu->setObjectName("mnuFit");
    const std::array<std::pair<QPushButton*, const char*>, 4> entries{
        {{m_cmdLoad, "mnuLoad"}, {m_cmdDelete, "mnuDelete"}, {m_cmdAdd, "mnuAdd"}, {exit, "mnuExit"}}};
    for (const auto& pair : entries) {
        QPushButton* button = pair.first;
        QAction* entry = menu->addAction(button->text());
        entry->setObjectName(QString::fromLatin1(pair.second));
        connect(entry, &QAction::triggered, button, &QPushButton::click);
        connect(menu, &QMenu::aboutToShow, entry,
                [entry, button] { entry->setEnabled(button->isEnabled()); });
    }
    layout()->setMenuBar(bar);
}

QString frmFitManager::CurrentName() const
{
    const QTableWidgetItem* item = m_grdFits->item(m_grdFits->currentRow(), 0);
    return item ? item->text() : QString();
}

void frmFitManager::Restore(const clsVeltData& data, const Offers& offers)
{
    const int before = m_grdFits->currentRow();
    m_grdFits->setRowCount(data.NumLoggedFits());
    for (int i = 1; i <= data.NumLoggedFits(); ++i) {
        const clsFit& fit = data.LoggedFit(i);
        const QStringList texts{
            QString::fromStdString(Trim(fit.FitName())), OneOf(kFirstModel, kModels, fit.MethType()),
            OneOf(kFirstFitOp, kFitOps, fit.FitOp()), DayText(fit.TheDate()), TimeText(fit.TheTime())};
        for (int column = 0; column < texts.size(); ++column)
            m_grdFits->setItem(i - 1, column, new QTableWidgetItem(texts[column]));
    }
    if (m_grdFits->rowCount() > 0)
        m_grdFits->setCurrentCell(std::clamp(before, 0, m_grdFits->rowCount() - 1), 0);
    m_lblMsg->setText(Words(kThereAre) + QString::number(data.NumLoggedFits()) + Words(kSavedFits));
    m_cmdAdd->setEnabled(offers.add);
    m_cmdLoad->setEnabled(offers.loadAndDelete && data.NumLoggedFits() >= 1);
    m_cmdDelete->setEnabled(m_cmdLoad->isEnabled());
}

/// Enter loads the current row, unless it is on its way to a button; Escape closes.
void frmFitManager::keyPressEvent(QKeyEvent* event)
{
    const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (enter && m_grdFits->hasFocus())
        m_cmdLoad->click();
    else if (enter && qobject_cast<QPushButton*>(focusWidget()))
        qobject_cast<QPushButton*>(focusWidget())->click();
    else if (event->key() == Qt::Key_Escape)
        hide();
    else
        QWidget::keyPressEvent(event);
}
