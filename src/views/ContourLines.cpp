// SPDX-License-Identifier: GPL-3.0-or-later
#include "views/ContourLines.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <map>
#include <optional>

namespace
{

using contour_lines::Line;
using contour_lines::Point;

/// An edge of the grid that the line crosses; it starts at (i, j) and leads along x or along y.
struct Edge {
    std::size_t i = 0;
    std::size_t j = 0;
    bool alongX = true;

    auto operator<=>(const Edge&) const = default;
};

/// The edges that a line enters from a given one: one at the rim, else two.
struct Neighbours {
    std::array<Edge, 2> edges;
    std::size_t count = 0;
};

class Tracer
{
public:
    Tracer(const std::vector<double>& x, const std::vector<double>& y,
           const std::vector<std::vector<double>>& z, double level)
        : m_x(x), m_y(y), m_z(z), m_level(level)
    {
        for (std::size_t i = 0; i + 1 < x.size(); ++i)
            for (std::size_t j = 0; j + 1 < y.size(); ++j)
                MarchThrough(i, j);
    }

    std::vector<Line> Lines()
    {
        std::vector<Line> lines;
        for (const std::size_t ends : {1U, 2U}) // open lines first, so that what is left over is closed
            for (auto at = m_links.begin(); at != m_links.end();) {
                if (at->second.count != ends) {
                    ++at;
                    continue;
                }
                lines.push_back(Follow(at->first));
                at = m_links.begin();
            }
        return lines;
    }

private:
    bool Above(std::size_t i, std::size_t j) const { return m_z[i][j] >= m_level; }

    void Join(const Edge& a, const Edge& b)
    {
        Neighbours& ofA = m_links[a];
        ofA.edges[ofA.count++] = b;
        Neighbours& ofB = m_links[b];
        ofB.edges[ofB.count++] = a;
    }

    void MarchThrough(std::size_t i, std::size_t j)
    {
        const double sum = m_z[i][j] + m_z[i + 1][j] + m_z[i + 1][j + 1] + m_z[i][j + 1];
        if (!std::isfinite(sum))
            return;
        const Edge bottom{i, j, true}, right{i + 1, j, false}, top{i, j + 1, true}, left{i, j, false};
        const bool a = Above(i, j), b = Above(i + 1, j), c = Above(i + 1, j + 1), d = Above(i, j + 1);
        if (a == c && b == d && a != b) {
            const bool middle = sum / 4.0 >= m_level;
            Join(bottom, middle == a ? right : left);
            Join(top, middle == a ? left : right);
            return;
        }
        std::optional<Edge> first;
        const auto take = [&](bool crossed, const Edge& edge) {
            if (crossed && first)
                Join(*first, edge);
            else if (crossed)
                first = edge;
        };
        take(a != b, bottom);
        take(b != c, right);
        take(c != d, top);
        take(d != a, left);
    }

    Point Crossing(const Edge& edge) const
    {
        const double from = m_z[edge.i][edge.j];
        const double to = edge.alongX ? m_z[edge.i + 1][edge.j] : m_z[edge.i][edge.j + 1];
        const double part = (m_level - from) / (to - from); // the ends lie on two sides, so they differ
        if (edge.alongX)
            return {m_x[edge.i] + part * (m_x[edge.i + 1] - m_x[edge.i]), m_y[edge.j]};
        return {m_x[edge.i], m_y[edge.j] + part * (m_y[edge.j + 1] - m_y[edge.j])};
    }

    /// Walks from `start` to the other end, or once round, and takes the edges out.
    Line Follow(const Edge start)
    {
        Line line;
        std::optional<Edge> at = start;
        bool closed = false;
        while (at) {
            line.push_back(Crossing(*at));
            const Neighbours next = m_links[*at];
            m_links.erase(*at);
            closed = next.count == 2;
            at.reset();
            for (std::size_t k = 0; k < next.count && !at; ++k)
                if (m_links.contains(next.edges[k]))
                    at = next.edges[k];
        }
        if (closed)
            line.push_back(line.front());
        return line;
    }

    const std::vector<double>& m_x;
    const std::vector<double>& m_y;
    const std::vector<std::vector<double>>& m_z;
    double m_level;
    std::map<Edge, Neighbours> m_links;
};

} // namespace

std::vector<double> contour_lines::Levels(double low, double high, double closest, int count)
{
    std::vector<double> levels;
    if (!(low < high) || !(closest > 0.0))
        return levels;
    const double height = high - low;
    const double first = std::min(closest, height / (count + 1));
    const double factor = std::pow(height / first, 1.0 / count);
    double above = first;
    for (int k = 0; k < count; ++k, above *= factor)
        levels.push_back(low + above);
    return levels;
}

std::vector<Line> contour_lines::Trace(const std::vector<double>& x, const std::vector<double>& y,
                                       const std::vector<std::vector<double>>& z, double level)
{
    return Tracer(x, y, z, level).Lines();
}

namespace
{
constexpr std::size_t kBorder = 4; ///< rows and columns around the grid

/// 1 for valid and 0 for invalid, with the rim carried on around it and a valid ring around all.
std::vector<std::vector<double>> Bordered(const std::vector<std::vector<bool>>& valid)
{
    const std::size_t across = valid.size() + 2 * kBorder;
    const std::size_t up = valid.front().size() + 2 * kBorder;
    const auto inside = [](std::size_t at, std::size_t size) {
        return std::clamp<std::size_t>(at, kBorder, kBorder + size - 1) - kBorder;
    };
    std::vector<std::vector<double>> field(across, std::vector<double>(up, 1.0));
    for (std::size_t i = 1; i + 1 < across; ++i)
        for (std::size_t j = 1; j + 1 < up; ++j)
            field[i][j] = valid[inside(i, valid.size())][inside(j, valid.front().size())] ? 1.0 : 0.0;
    return field;
}

/// Draws a closed line through the middles of grid edges taut. Each point stays on its edge, so that no point
/// of the grid changes sides.
void Tighten(Line& line)
{
    constexpr int kRounds = 200;
    constexpr double kReach = 0.49;
    const Line was = line;
    const std::size_t points = line.size() - 1; // the last one is the first
    if (points < 3)
        return;
    for (int round = 0; round < kRounds; ++round) {
        const Line before = line;
        for (std::size_t k = 0; k < points; ++k) {
            const Point& last = before[(k + points - 1) % points];
            const Point& next = before[(k + 1) % points];
            const auto pull = [](double at, double from, double to, double home) {
                return std::clamp((2.0 * at + from + to) / 4.0, home - kReach, home + kReach);
            };
            if (was[k].x == std::round(was[k].x))
                line[k].y = pull(before[k].y, last.y, next.y, was[k].y);
            else
                line[k].x = pull(before[k].x, last.x, next.x, was[k].x);
        }
    }
    line.back() = line.front();
}
} // namespace

std::vector<Line> contour_lines::SmoothOutlines(const std::vector<std::vector<bool>>& valid)
{
    if (valid.empty() || valid.front().empty())
        return {};
    const std::vector<std::vector<double>> field = Bordered(valid);
    const auto numbers = [](std::size_t count) {
        std::vector<double> positions;
        positions.reserve(count);
        for (std::size_t k = 0; k < count; ++k)
            positions.push_back(static_cast<double>(k) - static_cast<double>(kBorder));
        return positions;
    };
    std::vector<Line> lines = Trace(numbers(field.size()), numbers(field.front().size()), field, 0.5);
    for (Line& line : lines)
        Tighten(line);
    return lines;
}
