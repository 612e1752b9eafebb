// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <ostream>
#include <string>
#include <vector>

/// The options as typed; an option that was not given stays empty.
struct TypedOptions {
    std::string data, csvData, timeColumn, columns, model, error = "ls";
    std::string mort, initialProportion, lag, z, exclude, start, fix;
    std::string maxIts, fTol, xTol, convergeOn = "both";
    std::string bootstraps, seed, ci, scenarios, projectCi;
    std::string format = "text", csvDir, plotsDir, contours;
    std::string logAs, project;

    std::string info, dump; ///< file of the command of that name; empty for a fit
    bool dumpJson = false;
    std::string convert, convertTo; ///< files of the command convert
    std::string exported, text;     ///< files of the command export
    bool force = false;
};

/// The command line of velt-batch, without the program's name, sorted by options.
/// \return nothing when only help or the version was asked for; it has then been written to `out`
/// \throws BatchFailure BadUsage for an option that does not exist, stands twice, lacks its value or has an
///         empty one
std::optional<TypedOptions> ReadOptions(std::vector<std::string> arguments, std::ostream& out);
