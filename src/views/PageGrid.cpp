// SPDX-License-Identifier: GPL-3.0-or-later
#include "views/PageGrid.h"

#include <algorithm>

namespace
{
constexpr double kLeastScale = 0.02; // letters of a fifth of a point; nothing is ever so full
constexpr double kMostScale =
    3.0; // told apart so far, so that few graphs take the arrangement with most room

struct Division {
    int columns = 1;
    int rows = 1;
    int textColumns = 0; ///< 0: no text
    int textRows = 0;
};

/// Every division whose rows are all needed.
std::vector<Division> Divisions(int graphs, bool withText)
{
    constexpr int kMostTextColumns = 2; // lines that are wider do not read well
    std::vector<Division> divisions;
    const int most = graphs + kMostTextColumns;
    if (!withText) {
        for (int columns = 1; columns <= graphs; ++columns)
            divisions.push_back({.columns = columns, .rows = (graphs + columns - 1) / columns});
        return divisions;
    }
    for (int columns = 1; columns <= most; ++columns)
        for (int wide = 1; wide <= std::min(columns, kMostTextColumns); ++wide)
            for (int high = 1; high <= graphs + 1; ++high) {
                const int rows = (graphs + wide * high + columns - 1) / columns;
                if (rows >= high)
                    divisions.push_back(
                        {.columns = columns, .rows = rows, .textColumns = wide, .textRows = high});
            }
    return divisions;
}

/// One division at one scale.
class Sheet
{
public:
    Sheet(const PageWants& wants, const Division& division, double scale)
        : m_wants(wants), m_division(division), m_size(wants.page / scale),
          m_head(wants.headHeight(m_size.width())),
          m_cell((m_size.width() - wants.gap * (division.columns - 1)) / division.columns,
                 (m_size.height() - m_head - wants.gap * division.rows) / division.rows)
    {
    }

    QRectF Head() const { return {0.0, 0.0, m_size.width(), m_head}; }
    QRectF Cells(int column, int row, int columns, int rows) const
    {
        const double gap = m_wants.gap;
        return {column * (m_cell.width() + gap), m_head + gap + row * (m_cell.height() + gap),
                columns * m_cell.width() + (columns - 1) * gap, rows * m_cell.height() + (rows - 1) * gap};
    }
    QRectF Text() const { return Cells(0, 0, m_division.textColumns, m_division.textRows); }
    bool Holds() const
    {
        const bool graphs = m_wants.graphs == 0 || (m_cell.width() >= m_wants.leastGraph.width() &&
                                                    m_cell.height() >= m_wants.leastGraph.height());
        return graphs && m_cell.height() > 0.0 &&
               (m_division.textRows == 0 || m_wants.textHeight(Text().width()) <= Text().height());
    }

private:
    const PageWants& m_wants;
    const Division& m_division;
    QSizeF m_size;
    double m_head;
    QSizeF m_cell;
};

/// The largest scale at which everything fits, when it is above `least`; else `least`.
double LargestScale(const PageWants& wants, const Division& division, double least)
{
    if (!Sheet(wants, division, least).Holds())
        return least;
    double fits = least < 1.0 && Sheet(wants, division, 1.0).Holds() ? 1.0 : least;
    double tooLarge = kMostScale;
    constexpr double kClose = 1.002;
    while (tooLarge > fits * kClose) {
        const double between = (fits + tooLarge) / 2.0;
        (Sheet(wants, division, between).Holds() ? fits : tooLarge) = between;
    }
    return fits;
}
} // namespace

PageGrid LayOutPage(const PageWants& wants)
{
    const bool withText = static_cast<bool>(wants.textHeight);
    Division best{.textColumns = withText ? 1 : 0, .textRows = withText ? 1 : 0};
    double scale = kLeastScale;
    for (const Division& division : Divisions(wants.graphs, withText)) {
        const double reached = LargestScale(wants, division, scale);
        if (reached <= scale)
            continue;
        scale = reached;
        best = division;
    }
    PageGrid grid{.scale = std::min(scale, 1.0), .head = {}, .text = {}, .graphs = {}};
    const Sheet sheet(wants, best, grid.scale);
    grid.head = sheet.Head();
    if (withText)
        grid.text = sheet.Text();
    for (int cell = 0; static_cast<int>(grid.graphs.size()) < wants.graphs; ++cell) {
        const int column = cell % best.columns;
        const int row = cell / best.columns;
        if (column >= best.textColumns || row >= best.textRows)
            grid.graphs.push_back(sheet.Cells(column, row, 1, 1));
    }
    return grid;
}
