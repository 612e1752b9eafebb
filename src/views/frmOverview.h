// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "views/AskPrinter.h"
#include "views/OverviewPage.h"

#include <QPicture>
#include <QWidget>

class PageView;
class QToolBar;

/// All graphs of a fit and its report as one page: the wheel zooms, dragging pans, a double click shows the
/// whole page; it can be saved and printed. The close box hides the window.
class frmOverview : public QWidget
{
    Q_OBJECT

public:
    explicit frmOverview(QWidget* parent = nullptr);

    /// Shows the window with this page, whole.
    void Show(Overview overview);
    /// Draws another page, while the window shows; the zoom stays.
    void Follow(Overview overview);
    const Overview& Page() const { return m_overview; }

    /// Lets `choice` choose the printer in place of the dialog.
    void PrinterChosenBy(PrinterChoice choice) { m_choosePrinter = std::move(choice); }

public slots:
    /// Asks for a file name and writes the page.
    void SaveAs();
    /// Asks for a printer and prints the page.
    void Print();

private:
    void AddCommands(QToolBar& bar);
    void Warn(const QString& text);

    Overview m_overview;
    PageView* m_view;
    PrinterChoice m_choosePrinter = AskPrinter;
};
