// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QGraphicsView>
#include <QPicture>

class PageItem;

/// Shows one page: whole at first, and the wheel zooms at the mouse, dragging pans, a double click shows it
/// whole again.
class PageView : public QGraphicsView
{
    Q_OBJECT

public:
    explicit PageView(QWidget* parent = nullptr);

    /// \param size  of the page, in the pixels in which it was drawn
    void Page(const QPicture& picture, QSize size);

    /// Pixels of the screen for a pixel of the page.
    double Zoom() const { return transform().m11(); }

public slots:
    void ShowWhole();
    void ZoomIn();
    void ZoomOut();

protected:
    void wheelEvent(QWheelEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void ZoomBy(double factor, QPoint at);

    PageItem* m_page; ///< the scene owns it
    bool m_whole = true;
};
