// SPDX-License-Identifier: GPL-3.0-or-later
#include "views/frmOverview.h"

#include "base/VeltError.h"
#include "views/PageView.h"
#include "views/SavePicture.h"

#include <QAction>
#include <QMessageBox>
#include <QScreen>
#include <QToolBar>
#include <QVBoxLayout>
#include <qcustomplot.h>

namespace
{
QPicture PictureOf(const Drawing& drawing)
{
    QPicture picture;
    DrawVectors(drawing, picture);
    return picture;
}
} // namespace

frmOverview::frmOverview(QWidget* parent) : QWidget(parent, Qt::Window), m_view(new PageView(this))
{
    setObjectName(QStringLiteral("frmOverview"));
    setWindowTitle(tr("Overview"));
    auto* bar = new QToolBar(this);
    bar->setObjectName(QStringLiteral("tlbUtils"));
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(bar);
    column->addWidget(m_view, 1);
    AddCommands(*bar);
}

/// In the toolbar and in the menu of the right button.
void frmOverview::AddCommands(QToolBar& bar)
{
    m_view->setContextMenuPolicy(Qt::ActionsContextMenu);
    const auto add = [&](const char* name, const QString& text, const QKeySequence& keys) {
        QAction* action = bar.addAction(text);
        action->setObjectName(QString::fromLatin1(name));
        action->setShortcut(keys);
        m_view->addAction(action);
        return action;
    };
    connect(add("actSaveAs", tr("Save &As..."), QKeySequence::Save), &QAction::triggered, this,
            &frmOverview::SaveAs);
    connect(add("actPrint", tr("&Print..."), QKeySequence::Print), &QAction::triggered, this,
            &frmOverview::Print);
    connect(add("actZoomIn", tr("Zoom &In"), QKeySequence::ZoomIn), &QAction::triggered, m_view,
            &PageView::ZoomIn);
    connect(add("actZoomOut", tr("Zoom &Out"), QKeySequence::ZoomOut), &QAction::triggered, m_view,
            &PageView::ZoomOut);
    connect(add("actWholePage", tr("&Whole Page"), QKeySequence(Qt::CTRL | Qt::Key_0)), &QAction::triggered,
            m_view, &PageView::ShowWhole);
}

void frmOverview::Show(Overview overview)
{
    m_overview = std::move(overview);
    const Drawing drawing = overview_page::DrawingOf(m_overview);
    m_view->Page(PictureOf(drawing), drawing.size);
    if (!isVisible() && !testAttribute(Qt::WA_Resized)) { // later as the user left it
        const QRect free = screen()->availableGeometry();
        resize(drawing.size.scaled(free.size() * 17 / 20, Qt::KeepAspectRatio));
        move(free.center() - rect().center());
    }
    if (isMinimized())
        showNormal();
    show();
    raise();
    activateWindow();
    m_view->ShowWhole();
}

void frmOverview::Follow(Overview overview)
{
    m_overview = std::move(overview);
    const Drawing drawing = overview_page::DrawingOf(m_overview);
    m_view->Page(PictureOf(drawing), drawing.size);
}

void frmOverview::Warn(const QString& text)
{
    QMessageBox::warning(this, tr("VELT 3.0"), text);
}

void frmOverview::SaveAs()
{
    AskAndSavePicture(*this, tr("Save Overview"), tr("Overview"), {"pdf", "svg", "png"},
                      [this](const QString& path) { return overview_page::Save(m_overview, path); });
}

void frmOverview::Print()
{
    try {
        if (const auto printer = m_choosePrinter(this, QString::fromStdString(m_overview.dataSet)))
            overview_page::Print(m_overview, *printer);
    } catch (const VeltError& error) {
        Warn(tr("Error %1 %2").arg(error.number).arg(QString::fromStdString(error.description)));
    }
}
