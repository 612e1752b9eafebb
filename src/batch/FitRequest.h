// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "fit/MinimiserOptions.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

/// One job of velt-batch: what the command line asked for, checked as far as that goes without the data.
struct FitRequest {
    /// A text column, by its heading, that fills a column of the data set, by its grid title.
    struct Assignment {
        std::string heading;
        std::string gridTitle;
    };
    struct StartingValue {
        std::string parameter; ///< "N1", "Lambda", "K" or "R"
        double value = 0.0;
    };

    /// A project to be looked into instead of a fit.
    struct Inspection {
        std::string file;
        bool asJson = false;
    };
    std::optional<Inspection> inspection;

    /// A file to be made out of another instead of a fit.
    struct Making {
        std::string from;
        std::string to;
        bool replaces = false; ///< a file of that name
    };
    std::optional<Making> conversion; ///< of a project of version 2.0
    std::optional<Making> textExport; ///< of the table of a project

    std::string file;
    std::string project; ///< where the fit is logged
    std::optional<std::string> logAs;
    bool isProject = false;      ///< the file is a project and not a table
    bool commaSeparated = false; ///< the file came through --csv-data
    std::string timeColumn;
    std::vector<Assignment> columns;

    std::int32_t model = 1;
    std::int32_t errorModel = 1;
    std::optional<float> mort; ///< those not given keep the defaults of a new fit
    std::optional<float> initialProportion;
    std::optional<float> z;
    std::optional<std::int16_t> lag;
    std::vector<std::int32_t> exclude; ///< time labels
    std::vector<StartingValue> start;
    std::vector<std::string> fix; ///< parameters held at their starting values

    MinimiserOptions minimiser;
    bool bootstraps = false; ///< their number stands in `minimiser`
    std::optional<std::uint64_t> seed;
    std::optional<double> ciLow, ciHigh;

    std::optional<std::string> scenarios; ///< file of scenarios to project
    std::optional<std::string> projectCi; ///< the scenario to project with limits

    bool json = false;
    std::optional<std::string> csvDir;
    std::optional<std::string> plotsDir;
    std::optional<std::int16_t> contours; ///< points along each axis

    std::vector<std::string> notes; ///< what the user should know about the options, one sentence each

    bool SetsStart() const { return !start.empty() || !fix.empty(); }
};

/// The words of the command line for models 1 to 6 and for error models 1 to 4.
std::vector<std::string> ModelNames();
const std::vector<std::string>& ErrorModelNames();

/// The parameters of model 1 to 6 that take a starting value, in the order of the model.
std::vector<std::string> StartingParameters(std::int32_t model);
