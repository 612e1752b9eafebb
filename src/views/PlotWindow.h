// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "views/AskPrinter.h"

#include <QString>
#include <QWidget>
#include <qcustomplot.h>

class QAction;
class QLabel;

/// A window with one plot: the wheel zooms, dragging pans, a double click shows all again, the line below the
/// plot tells the value under the cursor, and the right button offers the picture. What is drawn and what the
/// line says is up to the window that builds on it.
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

public slots:
    /// Shows the ranges that were last remembered.
    void ResetZoom();
    /// Asks for a file name and writes the picture.
    void SavePicture();
    /// Asks for a printer and prints the picture.
    void PrintGraph();
    void CopyPicture();

protected:
    /// One more entry of the right button's menu.
    QAction* AddCommand(const char* name, const QString& caption);
    /// Shows the text `textId` of the string table as an information.
    void Tell(int textId);
    /// Takes the ranges of now as those that a reset goes back to.
    void RememberRanges();
    /// What the status line says for the cursor at `position`, in pixels of the plot, inside the axes.
    virtual QString ValueAt(const QPointF& position) const = 0;
    void resizeEvent(QResizeEvent* event) override;

private:
    void AddCommands();
    void OnMouseMove(QMouseEvent* event);

    QCustomPlot* m_plot;
    QLabel* m_status;
    PrinterChoice m_choosePrinter = AskPrinter;
    QCPRange m_homeX;
    QCPRange m_homeY;
};
