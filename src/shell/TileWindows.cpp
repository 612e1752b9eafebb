// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/TileWindows.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <functional>
#include <numeric>
#include <utility>

namespace
{
constexpr double kRoundOff = 1e-9; // of a quotient that is meant to be whole

using Blocks = std::vector<QRect>;

/// How many rows and columns of windows a block holds.
struct Cells {
    int columns = 0;
    int rows = 0;
    int All() const { return columns * rows; }
};

/// Windows of `scale` times the least size.
Cells CellsOf(const QRect& block, QSize least, double scale)
{
    const auto times = [&](int length, int one) {
        return static_cast<int>(std::floor(length / (scale * one) + kRoundOff));
    };
    return {times(block.width(), least.width()), times(block.height(), least.height())};
}

int CellsOf(const Blocks& blocks, QSize least, double scale)
{
    return std::accumulate(blocks.begin(), blocks.end(), 0, [&](int sum, const QRect& block) {
        return sum + CellsOf(block, least, scale).All();
    });
}

/// The lines at which something begins or ends.
struct Edges {
    std::vector<int> xs, ys;
    QRect Between(std::size_t left, std::size_t top, std::size_t right, std::size_t bottom) const
    {
        return {xs[left], ys[top], xs[right] - xs[left], ys[bottom] - ys[top]};
    }
};

Edges EdgesOf(const ScreenSpace& space)
{
    Edges edges;
    const auto add = [&](const QRect& rect) {
        edges.xs.insert(edges.xs.end(), {rect.x(), rect.x() + rect.width()});
        edges.ys.insert(edges.ys.end(), {rect.y(), rect.y() + rect.height()});
    };
    add(space.screen);
    for (const QRect& taken : space.taken)
        if (const QRect inside = taken & space.screen; !inside.isEmpty())
            add(inside);
    for (std::vector<int>* lines : {&edges.xs, &edges.ys}) {
        std::ranges::sort(*lines);
        lines->erase(std::unique(lines->begin(), lines->end()), lines->end());
    }
    return edges;
}

/// The free rectangles with this corner that can grow neither to the right nor down.
void AddBlocksAt(std::size_t left, std::size_t top, const Edges& edges, const ScreenSpace& space,
                 Blocks& blocks)
{
    const auto free = [&](std::size_t right, std::size_t bottom) {
        const QRect block = edges.Between(left, top, right, bottom);
        return std::ranges::none_of(space.taken, [&](const QRect& taken) { return taken.intersects(block); });
    };
    std::size_t limit = edges.xs.size(); // of the rows above
    for (std::size_t bottom = top + 1; bottom < edges.ys.size(); ++bottom) {
        std::size_t right = left + 1;
        while (right < limit && free(right, bottom))
            ++right;
        if (bottom > top + 1 && right < limit)
            blocks.push_back(edges.Between(left, top, limit - 1, bottom - 1));
        limit = right;
        if (limit == left + 1)
            return;
    }
    blocks.push_back(edges.Between(left, top, limit - 1, edges.ys.size() - 1));
}

/// Free rectangles that hold a window, among them every one that can grow to no side.
Blocks FreeBlocks(const ScreenSpace& space, QSize least)
{
    const Edges edges = EdgesOf(space);
    Blocks blocks;
    for (std::size_t top = 0; top + 1 < edges.ys.size(); ++top)
        for (std::size_t left = 0; left + 1 < edges.xs.size(); ++left)
            AddBlocksAt(left, top, edges, space, blocks);
    std::erase_if(blocks, [&](const QRect& block) { return CellsOf(block, least, 1.0).All() == 0; });
    return blocks;
}

/// `first`, and beside it the blocks that hold most, until there are enough for `count` windows.
Blocks Around(const QRect& first, ScreenSpace space, int count, QSize least)
{
    Blocks blocks{first};
    while (CellsOf(blocks, least, 1.0) < count) {
        space.taken.push_back(blocks.back());
        const Blocks rest = FreeBlocks(space, least);
        if (rest.empty())
            return {};
        blocks.push_back(*std::ranges::max_element(
            rest, {}, [&](const QRect& b) { return CellsOf(b, least, 1.0).All(); }));
    }
    return blocks;
}

/// Where it pays to begin: among many windows there are hundreds of gaps.
Blocks LargestOf(Blocks blocks, QSize least)
{
    constexpr std::size_t kMostStarts = 12;
    std::ranges::stable_sort(blocks, std::ranges::greater(),
                             [&](const QRect& block) { return CellsOf(block, least, 1.0).All(); });
    blocks.resize(std::min(blocks.size(), kMostStarts));
    return blocks;
}

/// The largest windows, in multiples of the least size, of which `blocks` hold `count`. Only at a size that
/// divides the width or the height of a block does the number change.
double LargestScale(const Blocks& blocks, int count, QSize least, double most)
{
    std::vector<double> scales{1.0, most};
    for (const QRect& block : blocks)
        for (int parts = 1; parts <= count; ++parts) {
            scales.push_back(static_cast<double>(block.width()) / (parts * least.width()));
            scales.push_back(static_cast<double>(block.height()) / (parts * least.height()));
        }
    double largest = 0.0;
    for (const double scale : scales)
        if (scale > largest && scale >= 1.0 && scale <= most && CellsOf(blocks, least, scale) >= count)
            largest = scale;
    return largest;
}

/// The first `count` places of a block of `cells`, which share its room.
std::vector<QRect> Places(const QRect& block, Cells cells, int count, QSize most)
{
    cells.columns = std::min(cells.columns, count);
    cells.rows = (count + cells.columns - 1) / cells.columns;
    const QSize size = QSize(block.width() / cells.columns, block.height() / cells.rows).boundedTo(most);
    std::vector<QRect> places;
    places.reserve(static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i)
        places.emplace_back(block.x() + i % cells.columns * size.width(),
                            block.y() + i / cells.columns * size.height(), size.width(), size.height());
    return places;
}
} // namespace

std::vector<QRect> TileWindows(const ScreenSpace& space, int count, QSize least, QSize most)
{
    if (count < 1)
        return {};
    const double mostScale = std::min(static_cast<double>(most.width()) / least.width(),
                                      static_cast<double>(most.height()) / least.height());
    Blocks blocks;
    double scale = 0.0;
    for (const QRect& first : LargestOf(FreeBlocks(space, least), least)) {
        Blocks here = Around(first, space, count, least);
        const double reached = LargestScale(here, count, least, mostScale);
        // Where it makes no difference the windows stay together.
        const bool together = reached > scale - kRoundOff && here.size() < blocks.size();
        if (reached > scale + kRoundOff || together) {
            scale = reached;
            blocks = std::move(here);
        }
    }
    const auto reading = [](const QRect& r) { return std::pair(r.y(), r.x()); };
    std::ranges::sort(blocks, {}, reading);
    std::vector<QRect> places;
    for (const QRect& block : blocks) {
        const Cells cells = CellsOf(block, least, scale);
        const int taken = std::min(cells.All(), count - static_cast<int>(places.size()));
        if (taken < 1)
            continue;
        const std::vector<QRect> more = Places(block, cells, taken, most);
        places.insert(places.end(), more.begin(), more.end());
    }
    std::ranges::sort(places, {}, reading);
    return places;
}
