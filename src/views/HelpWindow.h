// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "views/AskPrinter.h"

#include <QMainWindow>

class HelpBrowser;
class HelpLibrary;
class QHelpLink;
class QLabel;
class QLineEdit;
class QListWidget;
class QSplitter;
class QTabWidget;
class QToolBar;

/// The manual: contents, index and search beside the page. It is modeless, and a modal dialog does not shut
/// it off: it goes with the dialog, so that a page can be read while the form it tells of is filled in. The
/// close box hides it; its size is kept in the settings of the user's desktop.
class HelpWindow : public QMainWindow
{
    Q_OBJECT

public:
    /// `library` must have a manual and outlive the window.
    explicit HelpWindow(HelpLibrary& library, QWidget* parent = nullptr);

    /// Shows the window with this page, in front.
    void Open(const QUrl& page);

    /// Lets `choice` choose the printer in place of the dialog.
    void PrinterChosenBy(PrinterChoice choice) { m_choosePrinter = std::move(choice); }

public slots:
    /// Asks for a printer and prints the page.
    void Print();
    /// Looks for all words of the search line in all pages, once the search index is ready.
    void Search();

protected:
    bool event(QEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void BuildTools();
    QAction* AddTool(QToolBar& bar, const char* name, const QString& text, const QList<QKeySequence>& keys);
    QWidget* ContentsPage();
    QWidget* IndexPage();
    QWidget* SearchPage();
    QWidget* FindBar();
    void GoTo(const QUrl& page);
    void GoToOneOf(const QList<QHelpLink>& pages);
    void ShowWhereWeAre();
    void ShowHits();
    void OpenFind();
    void FindInPage(bool backward);
    void GoWithModal();
    void PutBack();

    HelpLibrary& m_library;
    HelpBrowser* m_page;
    QTabWidget* m_tabs;
    QSplitter* m_sides;
    QLineEdit* m_txtSearch = nullptr;
    QListWidget* m_lstHits = nullptr;
    QLabel* m_lblHits = nullptr;
    QWidget* m_find = nullptr;
    QLineEdit* m_txtFind = nullptr;
    QLabel* m_lblFind = nullptr;
    bool m_indexing = true;
    bool m_waits = false; ///< a search that the index was not ready for
    PrinterChoice m_choosePrinter = AskPrinter;
};
