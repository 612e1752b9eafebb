// SPDX-License-Identifier: GPL-3.0-or-later
// All graphs of a fit and its report on one page.
#pragma once

#include "fit/ParameterReport.h"
#include "views/PageGrid.h"
#include "views/VectorPicture.h"

#include <QByteArray>
#include <QSize>
#include <QString>

#include <memory>
#include <optional>
#include <string>
#include <variant>
#include <vector>

class ModelGraph;
class ProjGraph;
class QPrinter;

/// A graph of either kind.
using AnyGraph = std::variant<std::shared_ptr<const ModelGraph>, std::shared_ptr<const ProjGraph>>;

/// What stands on the page. It has all that it needs: neither data set nor model is asked again.
struct Overview {
    std::string dataSet; ///< name and description
    std::optional<ParameterReport> report;
    std::vector<AnyGraph> graphs;
};

namespace overview_page
{
/// A4, upright or across, whichever lets the letters be larger; in pixels of the screen.
QSize PageFor(const Overview& overview);

/// Where everything stands on a page of that size, which has margins of `margin`.
PageGrid GridOf(const Overview& overview, QSize page, int margin);

/// The page; letters are no larger than on the screen. It refers to `overview`.
Drawing DrawingOf(const Overview& overview, QSize page, int margin);
/// On the page of PageFor, with the margins of a paper.
Drawing DrawingOf(const Overview& overview);

/// Writes the page: .pdf and .svg as vectors with real text, .png with twice the dots. The file appears whole
/// or not at all. \return false for another ending \throws VeltError 57 with the reason when it cannot be
/// written
bool Save(const Overview& overview, const QString& path);

/// Fills one page of the printer, whichever way it lies. \throws PrinterFault the printer does not take it
void Print(const Overview& overview, QPrinter& printer);
} // namespace overview_page
