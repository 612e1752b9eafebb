// SPDX-License-Identifier: GPL-3.0-or-later
// The searches of MethodCommon: evaluations, starts, refits and the surface that a search walks on.
#include "base/Checked.h"
#include "base/NumberText.h"
#include "base/StringTable.h"
#include "models/LognormalFit.h"
#include "models/MethodCommon.h"
#include "models/StartVals.h"

#include <cmath>

using checked::Div;
using checked::ToFloat;
using model_table::Quantity;

double MethodCommon::INelMead_MinFunc(std::span<const double> x)
{
    m.CatchUnexpected = m.ProfileFailed = false;
    try {
        double value = Objective(x);
        if (m.ProfileFailed)
            value = OnceMoreFromHome(x, value);
        return std::isnan(value) || m.CatchUnexpected ? FailedEvaluation() : value;
    } catch (const VeltError& error) {
        if (!error.IsNumeric())
            throw;
        return FailedEvaluation();
    }
}

// An evaluation starts its profile where the last one ended. From far out, where a search looks around, no
// bracket of 20 steps reaches home again: without this one excursion would strand every evaluation after it.
double MethodCommon::OnceMoreFromHome(std::span<const double> x, double failed)
{
    const double nu = m.GammaNu;
    if (nu == m.HomeNu || !(m.HomeNu > 0.0))
        return failed;
    m.GammaNu = m.HomeNu;
    const double value = Objective(x);
    if (m.ProfileFailed)
        m.GammaNu = nu;
    return value;
}

SearchedParameters MethodCommon::Searched() const
{
    SearchedParameters searched{.count = m.Searched(), .held = {m.Fixed1, m.Fixed2}};
    for (std::size_t i = 0; i < searched.count; ++i)
        searched.estimate.at(i) = m.FinalEsts[m.Table().searched[i]];
    return searched;
}

void MethodCommon::FollowAt(std::span<const double> x)
{
    for (std::size_t i = 0; i < m.Searched(); ++i)
        m.WorkEsts[m.Table().searched[i]] = x[i];
    CalcPopTraj();
}

SearchRange MethodCommon::RangeFrom(const Estimates& start) const
{
    SearchRange range{.start = start, .second = start, .upper = {kUpperLimit, kUpperLimit}};
    for (const Quantity quantity : m.Table().searched)
        range.second[quantity] *= kSecondPoint;
    return range;
}

void MethodCommon::SetUpFinal(VELT_NelMead& minimiser, const SearchRange& range)
{
    minimiser.Create(*this, static_cast<std::int16_t>(m.Searched()));
    minimiser.MaxIts(Settings().intMaxIts);
    minimiser.FTOL(Settings().sngFTOL);
    minimiser.XTOL(Settings().sngXTOL);
    minimiser.ConvergeOn(Settings().ConvergeOn);
    if (m.FitOp == fit_op::kGamma)
        minimiser.VisibleRise(kVisibleLogLikelihood);
    for (std::size_t i = 0; i < m.Searched(); ++i) {
        const Quantity quantity = m.Table().searched[i];
        const double start = range.start[quantity];
        minimiser.SetParameter(static_cast<std::int16_t>(i + 1), start,
                               m.Held(i) ? start : range.second[quantity], 0.0, range.upper.at(i));
    }
}

void MethodCommon::SetUpBootStrap(VELT_NelMead& minimiser, const SearchRange& range)
{
    SetUpFinal(minimiser, range);
    minimiser.ConvergeOn(Settings().BootStrapConvergeOn);
    minimiser.HowCarefully(VELT_NelMead::Care::Replicate);
}

void MethodCommon::KeepReport(double minValue, std::int32_t evaluations, bool atBorder)
{
    m.atBorder = atBorder;
    m.objective = minValue * m.objectiveUnit;
    m.evaluations = evaluations;
    TheRun().globals.settings.LastEvaluations = evaluations;
}

void MethodCommon::RaiseNotConverged(const std::string& text, const std::string& source)
{
    m.Excuse = excuse::kNotConverged;
    throw ProgramError(errors::kMinimisationFailed, text, source);
}

double MethodCommon::StartSumSq(double q) const
{
    double sum = 0.0;
    for (int i = 1; i <= m.NAPoints(); ++i) {
        if (!m.InFit(i))
            continue;
        const double r = m.CatchVector(i) - q * m.EffMidPop(i);
        sum += r * r;
    }
    return sum;
}

bool MethodCommon::DoubleUntilItSurvives(const std::function<void()>& doubleStart) const
{
    constexpr int kMostDoublings = 99;
    int doublings = 0;
    for (; m.PopUnderflow && doublings < kMostDoublings; ++doublings)
        doubleStart();
    return doublings < kMostDoublings;
}

void MethodCommon::TakeSearched(Estimates& estimates, const VELT_NelMead& found) const
{
    for (std::size_t i = 0; i < m.Searched(); ++i)
        estimates[m.Table().searched[i]] = found.Estimate(static_cast<std::int16_t>(i + 1));
}

void MethodCommon::MarkOnSurface(ContourMark kind, const Estimates& at)
{
    if (m.Searched() == 2)
        m_contours.Mark(m, kind, at[m.Table().searched[0]], at[m.Table().searched[1]]);
}

void MethodCommon::SearchMinPop(int maxRounds)
{
    const Quantity first = m.Table().searched[0];
    m.WorkEsts = m.InitEsts;
    m.MinPop = ToFloat(SmallestSurvivingStart(m.InitEsts[first], maxRounds, [this, first](double start) {
        m.WorkEsts[first] = start;
        CalcPopTraj();
        return !m.PopUnderflow;
    }));
    m.WorkEsts = m.InitEsts;
    CalcPopTraj();
}

bool MethodCommon::InputStartingEsts()
{
    return m.Searched() == 1 ? AskStartingValue() : AskStartVals();
}

/// Asks for one starting value until it survives or the user gives up.
bool MethodCommon::AskStartingValue()
{
    const Quantity searched = m.Table().searched[0];
    const std::string prompt = LoadResString(model_table::InfoOf(searched).promptId);
    const std::string suggestion = number_text::Plain(m.InitEsts[searched]);
    for (;;) {
        const auto reply = TheRun().user.InputBox(prompt, LoadResString(1601), suggestion);
        if (!reply || reply->empty())
            return false;
        const auto value = number_text::ParseTyped(*reply);
        if (!value) {
            TheRun().user.Show({.text = LoadResString(1924)});
            return false;
        }
        // What is suggested may have more digits than its text.
        m.WorkEsts[searched] = *reply == suggestion ? m.InitEsts[searched] : *value;
        CalcPopTraj();
        if (!m.PopUnderflow)
            break;
        TheRun().user.Show({.text = LoadResString(1923)});
    }
    m.InitEsts = m.WorkEsts;
    return true;
}

bool MethodCommon::AskStartVals()
{
    const Quantity first = m.Table().searched[0];
    const Quantity second = m.Table().searched[1];
    StartVals starts{.Param1Name = LoadResString(model_table::InfoOf(first).captionId),
                     .Param2Name = LoadResString(model_table::InfoOf(second).captionId),
                     .param1 = m.InitEsts[first],
                     .param2 = m.InitEsts[second],
                     .Fixed1 = m.Fixed1,
                     .Fixed2 = m.Fixed2};
    if (!TheRun().user.AskStartVals(starts))
        return false;
    m.InitEsts[first] = starts.param1;
    m.InitEsts[second] = starts.param2;
    m.Fixed1 = starts.Fixed1;
    m.Fixed2 = starts.Fixed2;
    return true;
}

void MethodCommon::MomentStart()
{
    m.WorkEsts = m.InitEsts;
    CalcPopTraj();
    SumDiscountedCatches(m);
    TakeMoments();
}

void MethodCommon::TakeMoments()
{
    GammaMomentStart(m, m.InitEsts.Q, m.LsqSumSq);
}

void MethodCommon::LnBootStraps()
{
    RefitReplicates("_CalcLnBootStraps", [this] { DrawLogCatch(); });
}

void MethodCommon::GammaBootStraps()
{
    RefitReplicates("_CalcGammaBootStraps", [this] { DrawGammaCatch(); });
}

void MethodCommon::DrawGammaCatch()
{
    ResampleGammaCatch(m, m_gammaCatch);
    SumDiscountedCatches(m);
}

void MethodCommon::RefitReplicates(const char* procedure, const std::function<void()>& draw)
{
    VELT_NelMead minimiser; // one for all replicates: a new one would ask for its memory anew
    const SearchRange range = RefitRange();
    const int drawnAgain = RunReplicates(m, Source(procedure), [&](int b) {
        draw();
        SetUpBootStrap(minimiser, range);
        minimiser.Minimise();
        if (!minimiser.Converged())
            return false;
        TakeSearched(m.WorkEsts, minimiser);
        return KeepRefit(b);
    });
    AfterReplicates(drawnAgain);
}

double MethodCommon::RefittedQ() const
{
    return m.FitOp == fit_op::kGamma ? Div(m.GammaNu, m.GammaBeta) : LnFitComputeQ(m);
}

bool MethodCommon::KeepRefit(int b)
{
    m.WorkEsts.Q = RefittedQ();
    StoreReplicate(b);
    return true;
}

void MethodCommon::StoreReplicate(int b)
{
    for (const Quantity quantity : m.Table().limits)
        m_boot.BS(model_table::InfoOf(quantity).bsParam, b, ToFloat(ValueOf(quantity, m.WorkEsts)));
}

bool MethodCommon::SetContourRanges()
{
    return m.Searched() == 2 && m_contours.AskRanges(TheRun().user);
}

void MethodCommon::PrepareContours()
{
    if (m.FitOp == fit_op::kGamma)
        MomentStart();
}

double MethodCommon::GridValue(double first, double second)
{
    return INelMead_MinFunc(std::array{first, second});
}

bool MethodCommon::PlotInitContours()
{
    constexpr const char* kProcedure = "_IMethod_PlotInitContours";
    if (m.Searched() < 2)
        return false;
    if (m.Table().regression && fit_op::IsLeastSquares(m.FitOp))
        return true; // no minimisation to show
    if (!m_contours.HasRange())
        return false;
    return Traced(kProcedure, [this] {
        PrepareContours();
        const double nu = m.GammaNu;
        const auto objective = [this, nu](double first, double second) {
            m.GammaNu = nu; // every cell of the grid starts from the same shape
            return GridValue(first, second);
        };
        const ContourWords words = WordsOfContours();
        m_contours.Draw(m, objective, words.title, words.emptySource, Source(kProcedure));
        m_contours.StartPath(m.InitEsts[m.Table().searched[0]], m.InitEsts[m.Table().searched[1]]);
        return true;
    });
}
