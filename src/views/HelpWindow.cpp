// SPDX-License-Identifier: GPL-3.0-or-later
#include "views/HelpWindow.h"

#include "base/HelpTopics.h"
#include "base/VeltError.h"
#include "views/HelpBrowser.h"
#include "views/HelpLibrary.h"

#include <QAction>
#include <QApplication>
#include <QHelpContentWidget>
#include <QHelpEngine>
#include <QHelpIndexWidget>
#include <QHelpLink>
#include <QHelpSearchEngine>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QMessageBox>
#include <QScreen>
#include <QSettings>
#include <QSplitter>
#include <QTabBar>
#include <QTabWidget>
#include <QToolBar>
#include <QToolButton>
#include <QVBoxLayout>
#include <QWindow>

namespace
{
const QString kGeometry = QStringLiteral("help/geometry");
const QString kSides = QStringLiteral("help/sides");

QSettings Settings()
{
    return QSettings(QSettings::IniFormat, QSettings::UserScope, QStringLiteral("VELT"),
                     QStringLiteral("VELT"));
}

/// Each word in quotes, so that the search takes it as it stands and not for a sign of its own language.
QString Quoted(const QString& typed)
{
    QStringList words = typed.split(' ', Qt::SkipEmptyParts);
    for (QString& word : words)
        word = '"' + word.remove('"') + '"';
    words.removeAll(QStringLiteral("\"\""));
    return words.join(' ');
}
} // namespace

HelpWindow::HelpWindow(HelpLibrary& library, QWidget* parent)
    : QMainWindow(parent), m_library(library), m_page(new HelpBrowser(library)), m_tabs(new QTabWidget),
      m_sides(new QSplitter)
{
    setObjectName("HelpWindow");
    setWindowTitle(tr("VELT 3.0 Help"));
    m_tabs->setObjectName("tabHelp");
    m_tabs->addTab(ContentsPage(), tr("&Contents"));
    m_tabs->addTab(IndexPage(), tr("I&ndex"));
    m_tabs->addTab(SearchPage(), tr("&Search"));
    connect(m_tabs, &QTabWidget::currentChanged, this, [this] {
        if (!m_tabs->tabBar()->hasFocus()) // the arrows walk along the tabs
            m_tabs->currentWidget()->setFocus();
    });
    connect(
        m_tabs, &QTabWidget::tabBarClicked, this, [this] { m_tabs->currentWidget()->setFocus(); },
        Qt::QueuedConnection); // behind the click, which changes the page first
    auto* right = new QWidget;
    auto* column = new QVBoxLayout(right);
    column->setContentsMargins(0, 0, 0, 0);
    column->addWidget(m_page, 1);
    column->addWidget(FindBar());
    m_sides->addWidget(m_tabs);
    m_sides->addWidget(right);
    m_sides->setStretchFactor(1, 1);
    m_sides->setChildrenCollapsible(false);
    setCentralWidget(m_sides);
    BuildTools();
    connect(m_page, &QTextBrowser::sourceChanged, this, &HelpWindow::ShowWhereWeAre);
    PutBack();
}

void HelpWindow::BuildTools()
{
    QToolBar& bar = *addToolBar(tr("Manual"));
    bar.setObjectName("tlbHelp");
    bar.setMovable(false);
    setContextMenuPolicy(Qt::NoContextMenu); // which would only offer to hide the toolbar
    QAction* back = AddTool(bar, "actBack", tr("&Back"), {QKeySequence::Back});
    QAction* forward = AddTool(bar, "actForward", tr("&Forward"), {QKeySequence::Forward});
    QAction* home = AddTool(bar, "actHome", tr("&Home"), {Qt::ALT | Qt::Key_Home});
    bar.addSeparator();
    QAction* find = AddTool(bar, "actFind", tr("Find in &Page..."), {QKeySequence::Find});
    QAction* larger =
        AddTool(bar, "actZoomIn", tr("&Larger"), {QKeySequence::ZoomIn, Qt::CTRL | Qt::Key_Equal});
    QAction* smaller = AddTool(bar, "actZoomOut", tr("S&maller"), {QKeySequence::ZoomOut});
    QAction* usual = AddTool(bar, "actZoomUsual", tr("&Usual Size"), {Qt::CTRL | Qt::Key_0});
    bar.addSeparator();
    QAction* print = AddTool(bar, "actPrint", tr("P&rint..."), {QKeySequence::Print});
    back->setEnabled(false);
    forward->setEnabled(false);
    connect(m_page, &QTextBrowser::backwardAvailable, back, &QAction::setEnabled);
    connect(m_page, &QTextBrowser::forwardAvailable, forward, &QAction::setEnabled);
    connect(back, &QAction::triggered, m_page, &QTextBrowser::backward);
    connect(forward, &QAction::triggered, m_page, &QTextBrowser::forward);
    connect(home, &QAction::triggered, this, [this] { GoTo(m_library.Page(help_topics::kContents)); });
    connect(find, &QAction::triggered, this, &HelpWindow::OpenFind);
    connect(larger, &QAction::triggered, m_page, &HelpBrowser::Larger);
    connect(smaller, &QAction::triggered, m_page, &HelpBrowser::Smaller);
    connect(usual, &QAction::triggered, m_page, &HelpBrowser::UsualSize);
    connect(print, &QAction::triggered, this, &HelpWindow::Print);
}

QAction* HelpWindow::AddTool(QToolBar& bar, const char* name, const QString& text,
                             const QList<QKeySequence>& keys)
{
    QAction* action = bar.addAction(text);
    action->setObjectName(QString::fromLatin1(name));
    action->setShortcuts(keys);
    if (QWidget* button = bar.widgetForAction(action))
        button->setFocusPolicy(Qt::TabFocus);
    return action;
}

QWidget* HelpWindow::ContentsPage()
{
    QHelpContentWidget* tree = m_library.Engine().contentWidget();
    tree->setObjectName("treContents");
    tree->setHeaderHidden(true);
    connect(tree, &QHelpContentWidget::linkActivated, this, &HelpWindow::GoTo);
    // The contents come from a thread of their own, as a rule after the page.
    connect(m_library.Engine().contentModel(), &QHelpContentModel::contentsCreated, this, [this, tree] {
        tree->expandToDepth(0);
        ShowWhereWeAre();
    });
    return tree;
}

QWidget* HelpWindow::IndexPage()
{
    auto* page = new QWidget;
    auto* column = new QVBoxLayout(page);
    auto* filter = new QLineEdit;
    filter->setObjectName("txtIndex");
    page->setFocusProxy(filter); // who opens the page begins to type
    filter->setClearButtonEnabled(true);
    auto* label = new QLabel(tr("&Keyword:"));
    label->setBuddy(filter);
    QHelpIndexWidget* list = m_library.Engine().indexWidget();
    list->setObjectName("lstIndex");
    column->addWidget(label);
    column->addWidget(filter);
    column->addWidget(list, 1);
    connect(filter, &QLineEdit::textChanged, list,
            [list](const QString& text) { list->filterIndices(text); });
    connect(filter, &QLineEdit::returnPressed, list, &QHelpIndexWidget::activateCurrentItem);
    connect(list, &QHelpIndexWidget::documentActivated, this,
            [this](const QHelpLink& link) { GoTo(link.url); });
    connect(list, &QHelpIndexWidget::documentsActivated, this, &HelpWindow::GoToOneOf);
    return page;
}

QWidget* HelpWindow::SearchPage()
{
    auto* page = new QWidget;
    auto* column = new QVBoxLayout(page);
    m_txtSearch = new QLineEdit;
    m_txtSearch->setObjectName("txtSearch");
    page->setFocusProxy(m_txtSearch);
    m_txtSearch->setClearButtonEnabled(true);
    auto* label = new QLabel(tr("Pages with all these &words:"));
    label->setBuddy(m_txtSearch);
    m_lstHits = new QListWidget;
    m_lstHits->setObjectName("lstHits");
    m_lblHits = new QLabel;
    m_lblHits->setObjectName("lblHits");
    column->addWidget(label);
    column->addWidget(m_txtSearch);
    column->addWidget(m_lstHits, 1);
    column->addWidget(m_lblHits);
    connect(m_txtSearch, &QLineEdit::returnPressed, this, &HelpWindow::Search);
    connect(m_lstHits, &QListWidget::itemActivated, this,
            [this](const QListWidgetItem* hit) { GoTo(hit->data(Qt::UserRole).toUrl()); });
    connect(m_lstHits, &QListWidget::itemClicked, this,
            [this](const QListWidgetItem* hit) { GoTo(hit->data(Qt::UserRole).toUrl()); });
    const QHelpSearchEngine* search = m_library.Engine().searchEngine();
    connect(search, &QHelpSearchEngine::indexingFinished, this, [this] {
        m_indexing = false;
        if (m_waits)
            Search();
    });
    connect(search, &QHelpSearchEngine::searchingFinished, this, &HelpWindow::ShowHits);
    return page;
}

QWidget* HelpWindow::FindBar()
{
    m_find = new QWidget;
    m_find->setObjectName("picFind");
    auto* row = new QHBoxLayout(m_find);
    m_txtFind = new QLineEdit;
    m_txtFind->setObjectName("txtFind");
    auto* label = new QLabel(tr("Find in page:"));
    label->setBuddy(m_txtFind);
    m_lblFind = new QLabel;
    m_lblFind->setObjectName("lblFind");
    row->addWidget(label);
    row->addWidget(m_txtFind, 1);
    const auto add = [&](const char* name, const QString& text, bool backward,
                         QKeySequence::StandardKey key) {
        auto* button = new QToolButton;
        button->setObjectName(QString::fromLatin1(name));
        button->setText(text);
        button->setFocusPolicy(Qt::StrongFocus);
        row->addWidget(button);
        auto* action = new QAction(text, this);
        action->setShortcut(key);
        addAction(action);
        connect(action, &QAction::triggered, this, [this, backward] { FindInPage(backward); });
        connect(button, &QToolButton::clicked, action, &QAction::trigger);
    };
    add("cmdFindNext", tr("Next"), false, QKeySequence::FindNext);
    add("cmdFindPrevious", tr("Previous"), true, QKeySequence::FindPrevious);
    row->addWidget(m_lblFind);
    connect(m_txtFind, &QLineEdit::returnPressed, this, [this] { FindInPage(false); });
    m_find->hide();
    return m_find;
}

void HelpWindow::Open(const QUrl& page)
{
    GoTo(page);
    GoWithModal();
    if (isMinimized())
        showNormal();
    show();
    raise();
    activateWindow();
    m_page->setFocus();
}

void HelpWindow::GoTo(const QUrl& page)
{
    m_page->setSource(page);
}

/// A keyword of several pages lets the user choose.
void HelpWindow::GoToOneOf(const QList<QHelpLink>& pages)
{
    QMenu menu(this);
    menu.setObjectName("mnuPages");
    for (const QHelpLink& page : pages)
        connect(menu.addAction(QString(page.title).replace('&', "&&")), &QAction::triggered, this,
                [this, url = page.url] { GoTo(url); });
    menu.exec(QCursor::pos());
}

/// The contents follow the page, and the title of the window says which it is.
void HelpWindow::ShowWhereWeAre()
{
    const QString title = m_page->documentTitle();
    setWindowTitle(title.isEmpty() ? tr("VELT 3.0 Help") : tr("%1 - VELT 3.0 Help").arg(title));
    QHelpContentWidget* tree = m_library.Engine().contentWidget();
    const QModelIndex here = tree->indexOf(m_page->source());
    if (here.isValid())
        tree->setCurrentIndex(here);
}

void HelpWindow::Search()
{
    const QString words = Quoted(m_txtSearch->text());
    m_waits = m_indexing && !words.isEmpty();
    if (m_waits)
        m_lblHits->setText(tr("Reading the manual..."));
    else if (!words.isEmpty())
        m_library.Search(words);
}

void HelpWindow::ShowHits()
{
    const QHelpSearchEngine* search = m_library.Engine().searchEngine();
    m_lstHits->clear();
    for (const QHelpSearchResult& hit : search->searchResults(0, search->searchResultCount())) {
        auto* item = new QListWidgetItem(hit.title(), m_lstHits);
        item->setToolTip(hit.snippet());
        item->setData(Qt::UserRole, hit.url());
    }
    const int hits = m_lstHits->count();
    m_lblHits->setText(hits == 0 ? tr("No page has all these words.") : tr("Pages found: %1").arg(hits));
    if (hits > 0)
        m_lstHits->setCurrentRow(0);
}

void HelpWindow::OpenFind()
{
    m_find->show();
    m_txtFind->setFocus();
    m_txtFind->selectAll();
}

void HelpWindow::FindInPage(bool backward)
{
    if (m_txtFind->text().isEmpty()) {
        OpenFind();
        return;
    }
    const bool found = m_page->Find(m_txtFind->text(), backward);
    m_lblFind->setText(found ? QString() : tr("Not on this page"));
}

void HelpWindow::Print()
{
    try {
        if (const auto printer = m_choosePrinter(this, m_page->documentTitle()))
            m_page->print(printer.get());
    } catch (const PrinterFault& fault) {
        QMessageBox::warning(this, tr("VELT 3.0"), QString::fromStdString(fault.description));
    }
}

/// A modal dialog blocks every window but those that belong to it.
void HelpWindow::GoWithModal()
{
    winId(); // a window that has not been shown yet has no handle
    const QWidget* modal = QApplication::activeModalWidget();
    QWindow* over = modal && modal->window() != this ? modal->window()->windowHandle() : nullptr;
    if (!modal || over)
        windowHandle()->setTransientParent(over);
}

bool HelpWindow::event(QEvent* event)
{
    if (event->type() == QEvent::WindowBlocked && isVisible())
        GoWithModal();
    return QMainWindow::event(event);
}

void HelpWindow::keyPressEvent(QKeyEvent* event)
{
    if (event->key() != Qt::Key_Escape)
        QMainWindow::keyPressEvent(event);
    else if (m_find->isVisible()) {
        m_find->hide();
        m_page->setFocus();
    } else
        close();
}

void HelpWindow::hideEvent(QHideEvent* event)
{
    QSettings settings = Settings();
    settings.setValue(kGeometry, saveGeometry());
    settings.setValue(kSides, m_sides->saveState());
    QMainWindow::hideEvent(event);
}

void HelpWindow::PutBack()
{
    const int em = fontMetrics().height();
    resize(QSize(56 * em, 42 * em).boundedTo(screen()->availableSize() * 9 / 10));
    m_sides->setSizes({16 * em, 40 * em});
    const QSettings settings = Settings();
    restoreGeometry(settings.value(kGeometry).toByteArray());
    m_sides->restoreState(settings.value(kSides).toByteArray());
}
