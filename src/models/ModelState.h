// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/Array1.h"
#include "data/clsVeltData.h"
#include "models/Estimates.h"
#include "models/IMethod.h"

#include <cstdint>
#include <functional>
#include <limits>
#include <span>

/// The state that the four models share, and what can be computed from it alone. The widths are part of the
/// design: per-period vectors are 32-bit floats on purpose, and the engines see values of that precision.
/// Periods count from 1; room is for 200.
struct ModelState {
    using Series = clsVeltData::Series;

    clsVeltData* data = nullptr;
    Run* run = nullptr;

    Series CatchVector;  ///< catch C(i) that the model is fitted to; bootstraps overwrite it
    Series ObsTCatchRef; ///< total catch T(i) that the trajectory removes; -1 where the cell is empty
    Series ObsCatchRef;  ///< observed catch kept for graphs
    Series CatchRef;     ///< total catch behind the discounted catches
    Series DiscCatch;    ///< discounted cumulative total catch K(i)
    Series Nt;           ///< population (or biomass) at the start of period i
    Series MidPop;       ///< mean population B(i) of period i
    Series ThetaVec;     ///< gamma work vector, ln of observed over expected catch
    Series FittedVec;    ///< fitted value of included periods on the scale of the error model
    Series ResidVec;     ///< residual of included periods on the scale of the error model
    Series PopVec;       ///< population as it goes to the data set
    Series ExpCatchVec;  ///< expected catch as it goes to the data set
    Array1<double, clsVeltData::kRows> EffMidPop; ///< X(i): expected catch divided by q

    Estimates WorkEsts;  ///< what the trajectory reads
    Estimates InitEsts;  ///< where a search starts
    Estimates FinalEsts; ///< the fit
    bool Fixed1 = false; ///< the first searched parameter is held at its start
    bool Fixed2 = false;

    bool UsingNosFlag = true; ///< catches are numbers, not weights
    /// The stock ran out in the current trajectory: behind some period nothing was left (below nothing, in a
    /// production model). Period 1 counts where it starts below nothing.
    bool PopUnderflow = false;
    bool DIYTCatch = false;
    bool SetStartingEsts = false;
    bool IsBSDone = false;
    bool MethDefined = false;
    bool PlotEvaluations = false;
    bool MinOK = false;           ///< some evaluation of the current search was inside the domain
    bool CatchUnexpected = false; ///< the last evaluation of a log search left out a period
    bool ProfileFailed = false;   ///< the last GammaMinimisation found no bracket
    Array1<bool, bs_param::kCount> BSFilled;

    double GammaNu = 0.0; ///< shape of a period's catch is GammaNu X(i)
    double HomeNu =
        0.0; ///< where a search began: a profile that fails from far out is tried once more from there
    double GammaBeta = 0.0; ///< rate; q = GammaNu / GammaBeta
    double LsqSumSq = 0.0;  ///< sum of squares of the starting fit
    double QValue = 0.0;
    double EffMidPopSum = 0.0; ///< sum of X(i) over the fit
    float InitDep = 0.0F;
    float Mort = 0.0F;
    float TotCatchSum = 0.0F;
    float CatchSum = 0.0F;
    float EffortSqSum = 0.0F;
    float MinPop = 0.0F; ///< smallest start without underflow
    float RSqr = 0.0F;
    std::int32_t NumBootStraps = 0;
    std::int32_t FitOp = fit_op::kLeastSquares;
    std::int32_t Excuse = excuse::kNone;
    std::int32_t WhichMeth = 0;
    std::int16_t LAG = 0;
    /// How the start came about: 2 as the regression gave it, 3 repaired. Only the project file reads it.
    std::int32_t StartEstKind = 2;
    std::int32_t StartEstKind2 = 2;

    std::optional<double> objective; ///< at the estimate, of the last final fit
    /// What a search counts the objective in: a power of two, so that no value is rounded; 1 unless sums of
    /// squares could come near the values that mean "outside the domain".
    double objectiveUnit = 1.0;
    bool atBorder = false;              ///< its search ended where the domain of the objective does
    std::optional<double> notArrivedAt; ///< lower than it, of a start whose search did not arrive
    std::int32_t evaluations = 0;
    std::optional<double> replacedStart; ///< what the regression gave, when the start is something else
    int replicatesDrawnAgain = 0;        ///< of the last bootstrap run

    bool operator==(const ModelState&) const = default;

    int NAPoints() const { return data->NAPoints(); }
    int NDPoints() const { return data->NDPoints(); }
    bool Included(int i) const { return data->Included(i); }
    bool ToggledIn(int i) const { return data->ToggledIn(i); }
    bool InFit(int i) const { return Included(i) && ToggledIn(i); }
    double Effort(int i) const { return static_cast<double>(data->Effort(i)); }
    double TimeLabel(int i) const { return static_cast<double>(data->MinTimeP() + (i - 1)); }
    bool HasVariances() const { return data->ColPresent(columns::VarAbundIndex); }

    const model_table::Model& Table() const { return model_table::Of(WhichMeth); }
    std::size_t Searched() const { return Table().searched.size(); }
    bool Held(std::size_t parameter) const { return parameter == 0 ? Fixed1 : Fixed2; }

    /// Number of the last state of a trajectory, one behind the last period, checked against the room for it,
    /// so that hot loops may work on raw spans. \throws VeltError 9 when 200 periods are filled, and before
    /// the periods have been counted
    int LastState() const;
};

/// Loads the catch arrays from the data set (numbers or weights by UsingNosFlag), counts the periods with a
/// total catch (`NAPoints`), and decides anew which of them are Included (effort above 0) and how many are in
/// the fit (`NNtPoints`). A period without total catch keeps its flags and is not counted.
void LoadColumnRefs(ModelState& m);

/// The sums over catches and efforts and the discounted cumulative catches
/// K(i+1) = K(i) exp(-M) + max(T(i), 0). \throws VeltError 9 when 200 periods are filled
void SumDiscountedCatches(ModelState& m);

/// ThetaVec(i) = ln(C(i) / (qbar X(i))), qbar the mean catch per X; 0 where the catch is 0. Only under the
/// gamma model and without underflow.
void CalcThetaVecOf(ModelState& m);

/// 1 - variance of the residuals / variance of the observations on the scale of the error model, over the
/// periods toggled in; 0 when the observations do not vary. Needs ExpCatchVec.
/// \throws VeltError 5 for a zero catch under the log model
float RSquaredOf(const ModelState& m);

/// Writes observed and expected catch rates and catches into the vectors and the data set, for the periods
/// Included: the expected rate is QValue times `meanPop(i)`, or 0.0001 where that is not above 0.
/// Marks the catch-rate columns and the system columns of the model's unit as present; where a mean weight
/// column exists also the population in the other unit.
void WriteCPUESeries(ModelState& m, const std::function<double(int)>& meanPop);

/// The plain sum of C(i) - q X(i) over the periods toggled in divided by their number, 0 for fewer than 2.
/// The terms are not squared: what least squares stores as variance is the mean residual. Deliberate.
double LSQVariance(const ModelState& m);

/// So many halvings take the largest number of this width to the smallest and then to 0. A bisection that has
/// gone on longer stands between two neighbours, where halves round to either of them.
template <typename Width>
inline constexpr int kMostHalvings =
    std::numeric_limits<Width>::max_exponent - std::numeric_limits<Width>::min_exponent +
    std::numeric_limits<Width>::digits + 1;

/// The sum over the periods in the fit of w(i) (C(i) - q X(i))^2 at the current trajectory, q the best for
/// it. \param weight  of period 1 first, as many as there are periods or more \throws VeltError 11 when
/// nothing is expected in any period
double WeightedSumSq(const ModelState& m, std::span<const double> weight);

/// A power of two in which no weighted sum of squares about a line through the origin reaches 2^61, since
/// none exceeds that of the catches themselves; 1 where that holds anyway.
double UnitOfSumSq(const ModelState& m, std::span<const double> weight);

/// The smallest start that survives: a bisection between 0 and `good` to 1 % of the answer.
/// \param maxRounds 0 for no limit but that of the numbers \param survives runs the trajectory from a start
double SmallestSurvivingStart(double good, int maxRounds, const std::function<bool(double)>& survives);
