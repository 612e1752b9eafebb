// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "graphs/VELT_ContourPlot.h"

#include <QByteArray>
#include <QPointF>
#include <QString>

#include <map>
#include <optional>
#include <vector>

class QCPCurve;
class QCPGraph;
class QCustomPlot;

/// One step of the minimiser.
struct ContourStep {
    double fromX = 0.0, fromY = 0.0, toX = 0.0, toY = 0.0;
};

/// A point marked on the surface.
struct ContourMarkAt {
    ContourMark kind = ContourMark::Start1;
    double x = 0.0, y = 0.0;
    std::size_t after = 0; ///< in a picture of a whole path: so many steps come before it
};

/// Draws a likelihood surface with its contour lines, and on it the path and the marks as they come. It does
/// not replot: the path and the marks lie on a layer of their own, which can be replotted alone.
class ContourPainter
{
public:
    /// \param plot  must outlive the painter
    explicit ContourPainter(QCustomPlot& plot);

    /// Draws `surface` and drops path and marks of an earlier one.
    void Surface(const ContourSurface& surface);
    /// A start begins a path of its own, in a tone of its own; no line leads there from the one before.
    /// \return whether the legend or the axes changed, so that the whole plot must be replotted
    bool Mark(const ContourMarkAt& mark);
    /// A leap across the picture, as from a search to its second look, is no line. \return as of Mark
    bool Step(const ContourStep& step);

    /// Name of the layer of path and marks.
    static QString PathLayer();

private:
    void AddColours(const ContourSurface& surface);
    void AddContours(const ContourSurface& surface) const;
    void AddInvalid(const ContourSurface& surface) const;
    void BeginPath(int start);
    QCPGraph& SeriesOf(ContourMark kind);
    bool Reach(double x, double y) const;
    void LineTo(const QPointF& place);

    QCustomPlot& m_plot;
    QCPCurve* m_path = nullptr; ///< of the present start; each has one of its own
    std::optional<ContourStep> m_last;
    std::optional<QPointF> m_pen; ///< where it stands
    int m_pathPoints = 0;
    std::map<ContourMark, QCPGraph*> m_marks;
};

/// The objective at (x, y), linear between the grid points; empty outside the grid and where more of the
/// surrounding cells, by their nearness, are invalid than valid.
std::optional<double> ObjectiveAt(const ContourSurface& surface, double x, double y);

/// The surface with path and marks as the bytes of a picture: "png", "svg" or "pdf"; nothing for another
/// ending.
QByteArray DrawContourPicture(const ContourSurface& surface, const std::vector<ContourStep>& path,
                              const std::vector<ContourMarkAt>& marks, const QString& ending);

/// Writes the surface with path and marks as a picture: .png, .svg or .pdf.
/// \return false for another ending or a file that cannot be written.
bool SaveContourPicture(const ContourSurface& surface, const std::vector<ContourStep>& path,
                        const std::vector<ContourMarkAt>& marks, const QString& file);
