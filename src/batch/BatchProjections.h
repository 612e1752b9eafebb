// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "batch/FitRequest.h"
#include "batch/FitTables.h"
#include "batch/ReadScenarios.h"
#include "data/clsVeltData.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

class ProjGraph;
class clsMethManager;

/// The scenario file of the request, read before any work is done.
/// \throws BatchFailure BadData what is wrong with it, or a scenario whose units the model does not know
std::optional<ScenarioFile> ScenariosOf(const FitRequest& request);

/// The projections of one job. A scenario file replaces the scenarios of the data set until the object goes:
/// what a project holds is not a job's to change.
class BatchProjections
{
public:
    /// All must outlive this object; the manager holds a fit, and its graphs arrive in `graphs`.
    BatchProjections(clsMethManager& manager, clsVeltData& data,
                     const std::vector<std::shared_ptr<ProjGraph>>& graphs);
    ~BatchProjections();
    BatchProjections(const BatchProjections&) = delete;
    BatchProjections& operator=(const BatchProjections&) = delete;

    /// Projects all scenarios of the file in its order. \throws BatchFailure BadData it does not suit the fit
    void Project(const ScenarioFile& file, FitTables& tables);
    /// Projects one scenario with limits; where it stands in `tables` already, it gets its limits there.
    /// \throws BatchFailure BadUsage there is no such scenario, or no replicate at a level
    void ProjectWithLimits(const std::string& title, FitTables& tables);
    /// What the manager has to say now, and what it said of the first projection.
    std::vector<Remark> Remarks() const;

private:
    void TakeGraph(FitTables& tables) const;

    clsMethManager& m_manager;
    clsVeltData& m_data;
    const std::vector<std::shared_ptr<ProjGraph>>& m_graphs;
    clsVeltData::ProjScenarios m_ownScenarios;
    std::int32_t m_ownPoints;
    std::optional<Remark> m_remark;
};
