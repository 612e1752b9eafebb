// SPDX-License-Identifier: GPL-3.0-or-later
#include "views/PageView.h"

#include <QGraphicsItem>
#include <QPainter>
#include <QScrollBar>
#include <QWheelEvent>

#include <algorithm>
#include <cmath>

namespace
{
constexpr double kStep = 1.25;     // of a key, or of a notch of the wheel
constexpr double kNotch = 120.0;   // as wheels count it
constexpr double kMostZoom = 16.0; // a letter then fills the window
} // namespace

/// The page on the desk.
class PageItem : public QGraphicsItem
{
public:
    void Page(const QPicture& picture, QSize size)
    {
        prepareGeometryChange();
        m_picture = picture;
        m_size = size;
        update();
    }
    QRectF boundingRect() const override { return {QPointF(0.0, 0.0), QSizeF(m_size)}; }
    void paint(QPainter* painter, const QStyleOptionGraphicsItem*, QWidget*) override
    {
        painter->fillRect(boundingRect(), Qt::white);
        painter->drawPicture(0, 0, m_picture);
    }

private:
    QPicture m_picture;
    QSize m_size;
};

PageView::PageView(QWidget* parent) : QGraphicsView(parent), m_page(new PageItem)
{
    setObjectName(QStringLiteral("pagOverview"));
    auto* desk = new QGraphicsScene(this);
    desk->addItem(m_page);
    setScene(desk);
    viewport()->setBackgroundRole(QPalette::Mid); // the desk, on which the edge of the page is seen
    setFrameShape(QFrame::NoFrame);
    setDragMode(ScrollHandDrag);
    setTransformationAnchor(NoAnchor);
    setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing);
}

void PageView::Page(const QPicture& picture, QSize size)
{
    m_page->Page(picture, size);
    setSceneRect(m_page->boundingRect());
    if (m_whole)
        ShowWhole();
}

void PageView::ShowWhole()
{
    m_whole = true;
    fitInView(sceneRect(), Qt::KeepAspectRatio);
}

/// What stands at the pixel `at` of the window stays there, where the page is larger than the window.
void PageView::ZoomBy(double factor, QPoint at)
{
    const double wanted = std::min(Zoom() * factor, kMostZoom);
    const QSizeF page = sceneRect().size() * wanted;
    if (page.width() <= viewport()->width() && page.height() <= viewport()->height()) {
        ShowWhole(); // smaller than the window it would only be harder to read
        return;
    }
    m_whole = false;
    const QPointF under = mapToScene(at);
    setTransform(QTransform::fromScale(wanted, wanted));
    const QPoint away = mapFromScene(under) - at;
    horizontalScrollBar()->setValue(horizontalScrollBar()->value() + away.x());
    verticalScrollBar()->setValue(verticalScrollBar()->value() + away.y());
}

void PageView::ZoomIn()
{
    ZoomBy(kStep, viewport()->rect().center());
}

void PageView::ZoomOut()
{
    ZoomBy(1.0 / kStep, viewport()->rect().center());
}

void PageView::wheelEvent(QWheelEvent* event)
{
    ZoomBy(std::pow(kStep, event->angleDelta().y() / kNotch), event->position().toPoint());
    event->accept();
}

void PageView::mouseDoubleClickEvent(QMouseEvent* event)
{
    ShowWhole();
    event->accept();
}

void PageView::resizeEvent(QResizeEvent* event)
{
    QGraphicsView::resizeEvent(event);
    if (m_whole)
        ShowWhole();
}
