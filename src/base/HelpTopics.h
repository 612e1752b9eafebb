// SPDX-License-Identifier: GPL-3.0-or-later
// The topics of the manual that the program opens. `docs/manual/contexts.txt` says which page each one is.
#pragma once

#include <array>
#include <string_view>

namespace help_topics
{
inline constexpr const char* kContents = "index"; ///< the first page; needs no line in the list

// By number where the program has always had one.
inline constexpr const char* kTooFewPoints = "20";
inline constexpr const char* kOptions = "68";
inline constexpr const char* kFitManager = "102"; ///< also a name that a logged fit has already
inline constexpr const char* kScenarios = "107";
inline constexpr const char* kProjectionGraph = "117";

inline constexpr const char* kMainWindow = "main";
inline constexpr const char* kNewDataSet = "new-data-set";
inline constexpr const char* kImportWizard = "import-wizard";
inline constexpr const char* kParameters = "parameters"; ///< the report
inline constexpr const char* kModelGraph = "model-graph";
inline constexpr const char* kInputParameters = "input-parameters";
inline constexpr const char* kStartingValues = "starting-values";
inline constexpr const char* kContourRange = "contour-range";
inline constexpr const char* kNumberFormat = "number-format";
inline constexpr const char* kGraphEdit = "graph-edit";
inline constexpr const char* kColumnUnits = "column-units";
inline constexpr const char* kOverview = "overview";
inline constexpr const char* kFileType = "file-type"; ///< a file that is not recognised

inline constexpr std::array<std::string_view, 18> kWithPages{
    kTooFewPoints, kOptions,      kFitManager, kScenarios,   kProjectionGraph, kMainWindow,
    kNewDataSet,   kImportWizard, kParameters, kModelGraph,  kInputParameters, kStartingValues,
    kContourRange, kNumberFormat, kGraphEdit,  kColumnUnits, kOverview,        kFileType};
} // namespace help_topics
