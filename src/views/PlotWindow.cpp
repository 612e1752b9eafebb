// SPDX-License-Identifier: GPL-3.0-or-later
#include "views/PlotWindow.h"

#include "base/VeltError.h"
#include "toolkit/Words.h"
#include "views/PlotPicture.h"
#include "views/PlotStyle.h"
#include "views/SavePicture.h"

#include <QAction>
#include <QClipboard>
#include <QFontMetrics>
#include <QGuiApplication>
#include <QLabel>
#include <QMessageBox>
#include <QRegularExpression>
#include <QVBoxLayout>

namespace
{
constexpr int kPrintGraph = 1951;

/// The title as a file name that every system takes, without an ending. What stands in brackets stays out:
/// the points of its numbers would be taken for one.
QString FileNameFor(const QString& title)
{
    static const QRegularExpression awkward("[^\\w-]+", QRegularExpression::UseUnicodePropertiesOption);
    return title.section('(', 0, 0).replace(awkward, " ").simplified();
}
} // namespace

PlotWindow::PlotWindow(const QString& plotName, QWidget* parent)
    : QWidget(parent, Qt::Window), m_plot(new QCustomPlot(this)), m_status(new QLabel(this))
{
    m_plot->setObjectName(plotName);
    m_plot->setInteractions(QCP::iRangeZoom | QCP::iRangeDrag);
    m_plot->setContextMenuPolicy(Qt::ActionsContextMenu); // opens by the menu key as well
    m_plot->setFocusPolicy(Qt::StrongFocus);
    const int em = QFontMetrics(plot_style::Font()).height();
    m_plot->setMinimumSize(22 * em, 15 * em); // smaller, and the labels would touch
    m_status->setObjectName(QStringLiteral("lblStatus"));
    m_status->setTextFormat(Qt::PlainText);
    m_status->setContentsMargins(em / 2, em / 6, em / 2, em / 6);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(m_plot, 1);
    column->addWidget(m_status);
    resize(40 * em, 28 * em);
    connect(m_plot, &QCustomPlot::mouseMove, this, &PlotWindow::OnMouseMove);
    connect(m_plot, &QCustomPlot::mouseDoubleClick, this, &PlotWindow::ResetZoom);
    AddCommands();
}

void PlotWindow::AddCommands()
{
    connect(AddCommand("actResetZoom", tr("&Reset Zoom")), &QAction::triggered, this, &PlotWindow::ResetZoom);
    QAction* save = AddCommand("actSavePicture", tr("&Save Picture As..."));
    save->setShortcut(QKeySequence::Save);
    connect(save, &QAction::triggered, this, &PlotWindow::SavePicture);
    QAction* print = AddCommand("actPrintGraph", Words(kPrintGraph));
    print->setShortcut(QKeySequence::Print);
    connect(print, &QAction::triggered, this, &PlotWindow::PrintGraph);
    QAction* copy = AddCommand("actCopyPicture", tr("&Copy Picture"));
    copy->setShortcut(QKeySequence::Copy);
    connect(copy, &QAction::triggered, this, &PlotWindow::CopyPicture);
}

QAction* PlotWindow::AddCommand(const char* name, const QString& caption)
{
    auto* action = new QAction(caption, this);
    action->setObjectName(QString::fromLatin1(name));
    m_plot->addAction(action);
    return action;
}

void PlotWindow::Tell(int textId)
{
    QMessageBox::information(this, tr("VELT 3.0"), Words(textId));
}

QString PlotWindow::StatusText() const
{
    return m_status->text();
}

void PlotWindow::RememberRanges()
{
    m_homeX = m_plot->xAxis->range();
    m_homeY = m_plot->yAxis->range();
}

void PlotWindow::ResetZoom()
{
    m_plot->xAxis->setRange(m_homeX);
    m_plot->yAxis->setRange(m_homeY);
    m_plot->replot(QCustomPlot::rpQueuedReplot);
}

void PlotWindow::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    plot_style::FitLegend(*m_plot, width());
    m_plot->replot(QCustomPlot::rpQueuedReplot);
}

void PlotWindow::OnMouseMove(QMouseEvent* event)
{
    const QPointF position = event->position();
    m_status->setText(m_plot->axisRect()->rect().contains(position.toPoint()) ? ValueAt(position)
                                                                              : QString());
}

void PlotWindow::SavePicture()
{
    AskAndSavePicture(*this, tr("Save Picture"), FileNameFor(windowTitle()), {"png", "svg", "pdf"},
                      [this](const QString& path) { return SavePlot(*m_plot, path, m_plot->size()); });
}

void PlotWindow::PrintGraph()
{
    try {
        if (const auto printer = m_choosePrinter(this, windowTitle()))
            PrintPlot(*m_plot, *printer);
    } catch (const VeltError& error) {
        QMessageBox::warning(
            this, tr("VELT 3.0"),
            tr("Error %1 %2").arg(error.number).arg(QString::fromStdString(error.description)));
    }
}

void PlotWindow::CopyPicture()
{
    constexpr int kGraphCopied = 1947;
    QGuiApplication::clipboard()->setImage(PlotImage(*m_plot, m_plot->size()));
    Tell(kGraphCopied);
}
