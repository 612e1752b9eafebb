// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "models/ModelState.h"

#include <memory>

/// While it lives, the data set is longer by future periods, through which trajectories of the model run. At
/// its end, also after a failure, the counters of the data set and the model are to the bit as before, so
/// that a report, replicates or a log made afterwards are the fit's own.
///
/// What lies behind the data stays as the last trajectory left it, deliberately: the populations and catches
/// there are what the next projection of a closed cohort starts from. So does the future effort, but for rows
/// that the table shows: those are the user's.
class FuturePeriods
{
public:
    /// `state` must outlive it. \pre the periods of the data and `periods` are at most
    /// clsProjScenario::kMostPeriods together
    FuturePeriods(ModelState& state, int periods);
    ~FuturePeriods();
    FuturePeriods(const FuturePeriods&) = delete;
    FuturePeriods& operator=(const FuturePeriods&) = delete;

private:
    ModelState& m;
    const std::unique_ptr<const ModelState> m_kept;
    const int m_naPoints;
    const int m_ndPoints;
    const clsVeltData::Flags m_toggledIn;
    const clsVeltData::Series m_effort;
};
