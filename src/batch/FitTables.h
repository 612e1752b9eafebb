// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "fit/Remark.h"
#include "models/IMethod.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

class clsMethManager;
class clsVeltData;

/// The numbers of a fit as tables and objects write them. An optional without a value is a value that does
/// not exist: missing in the data, or no result for a period outside the fit's data.
struct FitTables {
    struct Period {
        std::int32_t time = 0;
        bool included = false;
        bool toggledIn = false;
        std::optional<float> effort, obsCPUE, expCPUE, obsCatch, expCatch, nt, fittedVec, residVec;
    };
    struct Interval {
        std::string name;
        float low = 0.0F;
        float high = 0.0F;
    };
    /// Estimates of one bootstrap parameter in the order drawn.
    struct Replicates {
        std::string name;
        std::vector<float> values;
    };

    struct ProjectedPoint {
        std::int32_t time = 0;
        float population = 0.0F;
        std::optional<float> low, high; ///< only of a projection with limits
    };
    /// A scenario from the first projected point on, or the fit up to it.
    struct Projection {
        std::string scenario;             ///< "Fit" for the fit
        std::optional<std::string> units; ///< none for the fit
        std::vector<ProjectedPoint> series;
    };

    std::string model, errorModel; ///< as the command line names them
    float M = 0, InitialProportion = 0, LAG = 0, Z = 0;
    FitDetails details;
    std::vector<NamedValue> estimates; ///< in the order of the report
    float rSqr = 0.0F;
    std::vector<Period> series; ///< periods 1 to NAPoints
    std::int32_t timeAfter = 0; ///< the period behind the last one, which only `ntAfter` has
    std::optional<float> ntAfter;
    std::vector<Interval> intervals;     ///< empty without bootstraps
    std::vector<Replicates> replicates;  ///< the same
    std::vector<Projection> projections; ///< empty without scenarios
    std::vector<Remark> remarks;         ///< on the fit, its limits and its projections
};

/// The tables of a fit that stands, without bootstraps. Taken right after the fit: replicates overwrite what
/// the model holds for each period.
FitTables TablesOf(const clsMethManager& manager, const clsVeltData& data);

/// Adds limits at the manager's levels, and the replicates.
void AddBootstraps(FitTables& tables, const clsMethManager& manager);
