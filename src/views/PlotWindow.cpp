// SPDX-License-Identifier: GPL-3.0-or-later
#include "views/PlotWindow.h"

#include "views/PlotPicture.h"
#include "views/PlotStyle.h"

#include <QClipboard>
#include <QFileDialog>
#include <QFileInfo>
#include <QFontMetrics>
#include <QGuiApplication>
#include <QLabel>
#include <QMenu>
#include <QMessageBox>
#include <QVBoxLayout>

PlotWindow::PlotWindow(const QString& plotName, QWidget* parent)
    : QWidget(parent, Qt::Window), m_plot(new QCustomPlot(this)), m_status(new QLabel(this))
{
    m_plot->setObjectName(plotName);
    m_plot->setInteractions(QCP::iRangeZoom | QCP::iRangeDrag);
    m_plot->setContextMenuPolicy(Qt::CustomContextMenu);
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
    connect(m_plot, &QWidget::customContextMenuRequested, this, &PlotWindow::ShowMenu);
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

void PlotWindow::ShowMenu(const QPoint& position)
{
    QMenu menu(this);
    menu.addAction(tr("&Reset Zoom"), this, &PlotWindow::ResetZoom);
    menu.addSeparator();
    menu.addAction(tr("&Save Picture As..."), this, &PlotWindow::SavePicture);
    menu.addAction(tr("&Copy Picture"), this, &PlotWindow::CopyPicture);
    menu.exec(m_plot->mapToGlobal(position));
}

void PlotWindow::SavePicture()
{
    const QString pictures = tr("PNG picture (*.png);;SVG drawing (*.svg);;PDF document (*.pdf)");
    QString filter;
    QString path = QFileDialog::getSaveFileName(this, tr("Save Picture"), QString(), pictures, &filter);
    if (path.isEmpty())
        return;
    if (QFileInfo(path).suffix().isEmpty())
        path += filter.contains(QLatin1String("svg"))   ? ".svg"
                : filter.contains(QLatin1String("pdf")) ? ".pdf"
                                                        : ".png";
    if (!SavePlot(*m_plot, path, m_plot->size()))
        QMessageBox::warning(
            this, tr("VELT 3.0"),
            tr("The picture could not be written to\n%1\nPlease choose a folder you may write "
               "to, and a name that ends in .png, .svg or .pdf.")
                .arg(path));
}

void PlotWindow::CopyPicture()
{
    QGuiApplication::clipboard()->setImage(PlotImage(*m_plot, m_plot->size()));
}
