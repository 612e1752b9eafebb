// SPDX-License-Identifier: GPL-3.0-or-later
// How graphs and a text share one page.
#pragma once

#include <QRectF>
#include <QSizeF>

#include <functional>
#include <vector>

/// What is to stand on a page. Lengths are those of letters in their natural size.
struct PageWants {
    QSizeF page; ///< between the margins
    int graphs = 0;
    QSizeF leastGraph; ///< below it the labels of a graph would touch; not empty
    double gap = 0.0;  ///< between neighbours
    /// Height of the head line at a width.
    std::function<double(double width)> headHeight;
    /// Height of the text block at a width; empty when there is none.
    std::function<double(double width)> textHeight;
};

/// Places on a sheet that has the shape of the page and is drawn on it reduced by `scale`, at most 1.
struct PageGrid {
    double scale = 0.0;
    QRectF head;
    QRectF text;                ///< null without a text
    std::vector<QRectF> graphs; ///< row by row
};

/// The grid of equal cells, below the head, in which letters are largest: the text takes as many cells in the
/// upper left corner as it needs, each graph one of the others.
PageGrid LayOutPage(const PageWants& wants);
