// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "graphs/GraphTitles.h"

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <vector>

/// What a graph shows.
enum class GraphType : int {
    PointsAndLine = 0, ///< observed points against time with an expected line
    Residuals = 1,     ///< points with two horizontal limit lines
    Line = 2,          ///< a plain line; no clicks
    Histogram = 3,     ///< counts of bootstrap estimates
};

/// Content and behaviour of one graph: its series, which points show, what copying gives. It does not draw.
///
/// Points count from 1. `YData` holds the points in the fit and `YData2` those out of it, each with
/// InvalidData where the other has the point.
class ModelGraph : public GraphTitles
{
public:
    /// A point with this value is not drawn.
    static constexpr double InvalidData = -999.999;

    /// Sets of a graph of GraphType 0 and 1, as clicks name them.
    enum Set { kIncluded = 1, kExcluded = 2, kHighlight = 3, kExpected = 4 };

    /// Sizes the four series to `points`, all InvalidData.
    void Create(int points);

    GraphType Type() const { return m_type; }
    void Type(GraphType type) { m_type = type; }
    bool WithToggs() const { return m_withToggs; }
    void WithToggs(bool on) { m_withToggs = on; }
    float UCI() const { return m_uci; }
    void UCI(float value) { m_uci = value; }
    float LCI() const { return m_lci; }
    void LCI(float value) { m_lci = value; }

    /// Whether points can be toggled and lit up.
    bool TakesClicks() const { return m_withToggs && m_type != GraphType::Line; }

    int NumPoints() const { return m_points; }
    /// Each setter takes NumPoints values. \throws VeltError 9 for another length.
    void XData(std::span<const double> values) { Take(m_x, values); }
    void YData(std::span<const double> values) { Take(m_y, values); }
    void YData2(std::span<const double> values) { Take(m_y2, values); }
    void OverlayLine(std::span<const double> values) { Take(m_overlay, values); }
    const std::vector<double>& XData() const { return m_x; }
    const std::vector<double>& YData() const { return m_y; }
    const std::vector<double>& YData2() const { return m_y2; }
    const std::vector<double>& OverlayLine() const { return m_overlay; }

    /// Takes a point into the fit or out of it, on the picture: its value moves to the other observed set.
    /// Points count from 1. Nothing in a plain line, or in a graph without toggling. \throws VeltError 9
    /// outside 1 to NumPoints
    void TogglePoint(int point);

    /// Lights up the point, at the value that it has in `set`, and no other; the same point once more goes
    /// out. Nothing for the expected line, in a plain line, or without toggling. \throws VeltError 9 outside
    /// 1 to NumPoints
    void HighlightPoint(int set, int point);
    void StopInterrogate(); ///< no point is lit up

    /// The set in which a point (from 1) is drawn: kIncluded or kExcluded, 0 when it is in neither.
    int SetOf(int point) const;

    /// The point that is lit up.
    struct Highlight {
        int point = 0; ///< from 1
        double value = InvalidData;
        bool operator==(const Highlight&) const = default;
    };
    const std::optional<Highlight>& Highlighted() const { return m_highlight; }

    /// Whether a value is to be drawn.
    static bool Shown(double value) { return value != InvalidData; }

    /// The range of a time axis of years.
    struct TimeAxis {
        double minimum = 0.0;
        double maximum = 0.0;
        double step = 0.0;
    };
    /// Only when the first X lies from 1900 to 1999: from that year rounded down to a multiple of 5 to (last
    /// year + 5) rounded down, in five steps. Other graphs keep the drawing's own scale.
    std::optional<TimeAxis> YearAxis() const;

    /// The numbers as text for a spreadsheet: a heading line, then one line a point, columns parted by tabs,
    /// each line ended by CR LF. A graph of GraphType 0 gives time, observed (in or out of the fit) and
    /// expected values, any other one X and Y. A point that is not drawn has the value InvalidData.
    std::string CopiedText() const;

private:
    void Take(std::vector<double>& series, std::span<const double> values) const;
    std::size_t IndexOf(int point) const;

    GraphType m_type = GraphType::PointsAndLine;
    bool m_withToggs = false;
    float m_uci = 0.0F;
    float m_lci = 0.0F;
    int m_points = 0;
    std::vector<double> m_x, m_y, m_y2, m_overlay;
    std::optional<Highlight> m_highlight;
};
