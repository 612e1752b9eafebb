// SPDX-License-Identifier: GPL-3.0-or-later
#include "views/PlotWindow.h"

#include "base/VeltError.h"
#include "graphs/GraphTitles.h"
#include "toolkit/Words.h"
#include "views/PlotLook.h"
#include "views/PlotPicture.h"
#include "views/PlotStyle.h"
#include "views/SavePicture.h"
#include "views/frmGraphEdit.h"

#include <QAction>
#include <QClipboard>
#include <QFontMetrics>
#include <QGuiApplication>
#include <QLabel>
#include <QRegularExpression>
#include <QScreen>
#include <QToolBar>
#include <QVBoxLayout>

#include <algorithm>

namespace
{
constexpr int kGraphCopied = 1947;
constexpr int kDataCopied = 1948;
constexpr int kDataNotCopied = 1949;
constexpr int kEditGraph = 1950;
constexpr int kPrintGraph = 1951;
constexpr int kCopyGraph = 1952;
constexpr int kCopyData = 1953;

/// Whether the text has arrived. The system's clipboard itself reports no failure.
bool PutOnClipboard(const QString& text)
{
    QClipboard& clipboard = *QGuiApplication::clipboard();
    clipboard.setText(text);
    return clipboard.text() == text;
}

/// Where `dialog` leaves `window` in sight, if the screen has room for that.
void PlaceBeside(QDialog& dialog, const QWidget& window)
{
    constexpr int kBorders = 8; // pixels; the system has not said yet how wide they are
    dialog.adjustSize();
    const QRect screen = window.screen()->availableGeometry();
    const QRect taken = window.frameGeometry();
    const int width = dialog.width() + kBorders;
    const int top =
        std::clamp(taken.top(), screen.top(), std::max(screen.top(), screen.bottom() - dialog.height()));
    if (taken.right() + width <= screen.right())
        dialog.move(taken.right() + 1, top);
    else if (taken.left() - width >= screen.left())
        dialog.move(taken.left() - width, top);
}

/// The title as a file name that every system takes, without an ending. What stands in brackets stays out:
/// the points of its numbers would be taken for one.
QString FileNameFor(const QString& title)
{
    static const QRegularExpression awkward("[^\\w-]+", QRegularExpression::UseUnicodePropertiesOption);
    return title.section('(', 0, 0).replace(awkward, " ").simplified();
}
} // namespace

PlotWindow::PlotWindow(const QString& plotName, QWidget* parent)
    : QWidget(parent, Qt::Window), m_plot(new QCustomPlot(this)), m_bar(new QToolBar(this)),
      m_status(new QLabel(this)), m_putText(PutOnClipboard)
{
    m_plot->setObjectName(plotName);
    m_plot->setInteractions(QCP::iRangeZoom | QCP::iRangeDrag);
    m_plot->setContextMenuPolicy(Qt::ActionsContextMenu); // opens by the menu key as well
    m_plot->setFocusPolicy(Qt::StrongFocus);
    const int em = QFontMetrics(plot_style::Font()).height();
    m_plot->setMinimumSize(22 * em, 15 * em); // smaller, and the labels would touch
    m_bar->setObjectName(QStringLiteral("tlbUtils"));
    m_status->setObjectName(QStringLiteral("lblStatus"));
    m_status->setTextFormat(Qt::PlainText);
    m_status->setContentsMargins(em / 2, em / 6, em / 2, em / 6);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(m_bar);
    column->addWidget(m_plot, 1);
    column->addWidget(m_status);
    resize(40 * em, 28 * em);
    connect(m_plot, &QCustomPlot::mouseMove, this, &PlotWindow::OnMouseMove);
    connect(m_plot, &QCustomPlot::mouseDoubleClick, this, &PlotWindow::ResetZoom);
    AddCommands();
}

void PlotWindow::AddCommands()
{
    connect(AddButton("EditGraph", tr("&Edit..."), kEditGraph), &QAction::triggered, this,
            &PlotWindow::EditGraph);
    QAction* print = AddButton("PrintGraph", tr("&Print..."), kPrintGraph);
    print->setShortcut(QKeySequence::Print);
    connect(print, &QAction::triggered, this, &PlotWindow::PrintGraph);
    QAction* copy = AddButton("CopyGraph", tr("&Copy Graph"), kCopyGraph);
    copy->setShortcut(QKeySequence::Copy);
    connect(copy, &QAction::triggered, this, &PlotWindow::CopyPicture);
    QAction* save = AddCommand("actSavePicture", tr("&Save Picture As..."));
    save->setShortcut(QKeySequence::Save);
    connect(save, &QAction::triggered, this, &PlotWindow::SavePicture);
    connect(AddCommand("actResetZoom", tr("&Reset Zoom")), &QAction::triggered, this, &PlotWindow::ResetZoom);
}

QAction* PlotWindow::AddButton(const char* name, const QString& caption, int tipId)
{
    QAction* action = AddCommand(name, caption);
    action->setToolTip(Words(tipId));
    m_bar->addAction(action);
    return action;
}

void PlotWindow::AddCopyData(std::function<std::string()> text, QMessageBox::Icon success)
{
    connect(AddButton("CopyData", tr("Copy &Data"), kCopyData), &QAction::triggered, this,
            [this, text = std::move(text), success] {
                bool copied = false;
                try {
                    copied = m_putText(QString::fromStdString(text()));
                } catch (const VeltError&) {
                    copied = false;
                }
                Tell(copied ? kDataCopied : kDataNotCopied, copied ? success : QMessageBox::Warning);
            });
}

QAction* PlotWindow::AddCommand(const char* name, const QString& caption)
{
    auto* action = new QAction(caption, this);
    action->setObjectName(QString::fromLatin1(name));
    m_plot->addAction(action);
    return action;
}

void PlotWindow::Tell(int textId, QMessageBox::Icon icon)
{
    QMessageBox(icon, tr("VELT 3.0"), Words(textId), QMessageBox::Ok, this).exec();
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
    QGuiApplication::clipboard()->setImage(PlotImage(*m_plot, m_plot->size()));
    Tell(kGraphCopied, QMessageBox::Information);
}

void PlotWindow::EditGraph()
{
    GraphTitles& titles = Titles();
    const GraphEdit before{.title = titles.UserTitle(), .look = titles.Look()};
    const QCPRange seenX = m_plot->xAxis->range();
    const QCPRange seenY = m_plot->yAxis->range();
    const auto show = [&](const GraphEdit& edit) {
        titles.UserTitle(edit.title);
        titles.Look(edit.look);
        Redraw();
    };
    show({.title = titles.Title(), .look = {}}); // as it stands by itself; nothing reaches the screen yet
    const QCPRange x = m_plot->xAxis->range();
    const QCPRange y = m_plot->yAxis->range();
    frmGraphEdit form(
        {.title = titles.Title(),
         .xTitle = plot_look::PlainXTitle(titles),
         .yTitle = plot_look::PlainYTitle(titles),
         .x = {.low = x.lower, .high = x.upper},
         .y = {.low = y.lower, .high = y.upper},
         .series = IsSurface() ? std::vector<plot_look::Series>{} : plot_look::SeriesOf(*m_plot),
         .surface = IsSurface()},
        before, this);
    show(before);
    m_plot->xAxis->setRange(seenX); // a dialog that is cancelled leaves the zoom too
    m_plot->yAxis->setRange(seenY);
    form.AppliesBy([&](const GraphEdit& edit) {
        show(edit);
        emit Edited();
    });
    PlaceBeside(form, *this);
    form.exec();
}
