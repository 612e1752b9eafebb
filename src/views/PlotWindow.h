// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "views/AskPrinter.h"

#include <QMessageBox>
#include <QString>
#include <QWidget>
#include <qcustomplot.h>

#include <functional>
#include <string>

class GraphTitles;
class QAction;
class QLabel;
class QToolBar;

/// A window with one plot: the wheel zooms, dragging pans, a double click shows all again, the line below the
/// plot tells the value under the cursor, and toolbar and right button offer to edit, print and copy the
/// graph. What is drawn and what the line says is up to the window that builds on it.
class PlotWindow : public QWidget
{
    Q_OBJECT

public:
    /// \param plotName  the plot's object name
    PlotWindow(const QString& plotName, QWidget* parent);

    QCustomPlot& Plot() const { return *m_plot; }
    QString StatusText() const;

    /// Lets `choice` choose the printer in place of the dialog.
    void PrinterChosenBy(PrinterChoice choice) { m_choosePrinter = std::move(choice); }
    /// Lets `put` put copied data on the clipboard in place of the system's own; false when it fails.
    void CopiesBy(std::function<bool(const QString&)> put) { m_putText = std::move(put); }

    /// Draws the graph anew, after it has changed. The zoom starts afresh.
    virtual void Redraw() = 0;

public slots:
    /// Shows the ranges that were last remembered.
    void ResetZoom();
    /// Asks for a file name and writes the picture.
    void SavePicture();
    /// Asks for a printer and prints the picture.
    void PrintGraph();
    void CopyPicture();
    /// Lets the user edit titles, ranges and look of the graph.
    void EditGraph();

signals:
    /// The user has changed the graph's title or look.
    void Edited();

protected:
    /// One more button of the toolbar, with the text `tipId` as its tip, and entry of the right button's
    /// menu.
    QAction* AddButton(const char* name, const QString& caption, int tipId);
    /// The button that copies `text`() as data. What fails, in `text` or on the clipboard, is told.
    /// \param success  the icon beside the word that the data are copied
    void AddCopyData(std::function<std::string()> text, QMessageBox::Icon success);
    /// Shows the text `textId` of the string table.
    void Tell(int textId, QMessageBox::Icon icon);
    /// Takes the ranges of now as those that a reset goes back to.
    void RememberRanges();
    /// What the status line says for the cursor at `position`, in pixels of the plot, inside the axes.
    virtual QString ValueAt(const QPointF& position) const = 0;
    /// The graph's words and look, which the user may edit.
    virtual GraphTitles& Titles() = 0;
    /// A surface has neither legend nor grid lines nor series to choose.
    virtual bool IsSurface() const { return false; }
    void resizeEvent(QResizeEvent* event) override;

private:
    QAction* AddCommand(const char* name, const QString& caption);
    void AddCommands();
    void OnMouseMove(QMouseEvent* event);

    QCustomPlot* m_plot;
    QToolBar* m_bar;
    QLabel* m_status;
    PrinterChoice m_choosePrinter = AskPrinter;
    std::function<bool(const QString&)> m_putText;
    QCPRange m_homeX;
    QCPRange m_homeY;
};
