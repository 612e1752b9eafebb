// SPDX-License-Identifier: GPL-3.0-or-later
#include "fit/clsMethManager.h"

#include "base/Checked.h"
#include "base/HelpTopics.h"
#include "base/StringTable.h"
#include "fit/DataPlots.h"
#include "fit/FailureHints.h"
#include "fit/MinimiserOptions.h"
#include "fit/ParameterLimits.h"
#include "fit/ParameterReport.h"
#include "fit/Remarks.h"

#include <algorithm>
#include <cmath>
#include <exception>
#include <functional>
#include <new>
#include <optional>
#include <utility>

namespace
{
const std::string kFitSource = "clsMethManager_FitNewModel";

/// Whether the biomass behind the replacement yield would stand before period 1.
bool LagTooLong(const IMethod& method, const clsVeltData& data)
{
    return models::IsProduction(method.WhichMeth()) && method.LAG() > data.NAPoints();
}

/// What `work` raised, as one failure to be told; nothing when it came to its end. A failure that is not the
/// program's own, such as memory that runs out, ends a command like any other.
std::optional<VeltError> FailureOf(const std::function<void()>& work)
{
    try {
        work();
    } catch (const VeltError& error) {
        return error;
    } catch (const std::bad_alloc&) {
        return VeltError(errors::kOutOfMemory, "Out of memory", "");
    } catch (const std::exception& error) {
        return VeltError(errors::kInternal, error.what(), "");
    }
    return std::nullopt;
}

} // namespace

clsMethManager::clsMethManager(Run& run) : m_run(run) {}

clsMethManager::~clsMethManager()
{
    if (!m_data)
        return;
    for (int column = columns::kFirst; column <= columns::kLast; ++column) {
        if (clsVeltData::DBSysOnly(column) && m_data->ColPresent(column))
            m_data->ClearSystemColumn(column);
    }
}

void clsMethManager::Create(clsVeltData& data)
{
    m_data = &data;
    Reset();
}

void clsMethManager::Reset()
{
    m_modelAvailable.Fill(false);
    m_data->Reset();
    m_availableModels.clear();
    m_methDefined = m_fitLogged = false;
    m_inputs.PlotEvaluations = m_inputs.SetStartingEstimates = false;
    m_method.reset();
    m_fitRemarks.clear();
    m_projectionRemark.reset();
    if (m_displayParameters)
        m_run.window.ShowParameterReport(nullptr); // the wish to see the report outlives the fit
    m_ciLow = 0.025F;
    m_ciHigh = 0.975F;
    m_levelsBefore.reset();
}

void clsMethManager::Say(const std::string& text, Icon icon, Buttons buttons, const std::string& helpTopic)
{
    m_run.user.Show({.text = text, .icon = icon, .buttons = buttons, .helpTopic = helpTopic});
}

bool clsMethManager::IsBSDone() const
{
    return m_methDefined && m_method->IsBSDone();
}

void clsMethManager::DisplayParameters(bool show)
{
    m_displayParameters = show;
    if (show) {
        const ParameterReport report = ParameterReport::Of(*this);
        m_run.window.ShowParameterReport(&report);
    } else {
        m_run.window.ShowParameterReport(nullptr);
    }
    m_run.window.YieldToEvents();
}

void clsMethManager::BuildModelList()
{
    for (std::int32_t model = 1; model <= models::kCount; ++model) {
        m_modelAvailable(model) = m_data->CheckRqCols(model_table::Of(model).columns);
        if (m_modelAvailable(model))
            m_availableModels.push_back(m_run.globals.ModelTitles(model));
    }
}

bool clsMethManager::HasEnoughPoints(std::int32_t needed) const
{
    return m_data->NNtPoints() >= needed;
}

bool clsMethManager::ChooseModel()
{
    Selection selection{
        .caption = LoadResString(1506), .prompt = LoadResString(1505), .items = m_availableModels};
    if (!m_run.user.AskSelection(selection) || selection.chosen == 0)
        return false;
    const std::string& title = selection.items.at(selection.chosen - 1);
    const auto& titles = m_run.globals.ModelTitles;
    m_currMethType =
        static_cast<std::int32_t>(std::find(titles.begin(), titles.end(), title) - titles.begin()) + 1;
    return true;
}

void clsMethManager::CreateModel()
{
    m_method = NewMethod(m_currMethType);
    m_method->Create(*m_data);
    m_method->WhichMeth(m_currMethType);
    m_methDefined = true;
    m_method->SetColumnRefs();
}

bool clsMethManager::AskInputs()
{
    InputParams params{m_inputs, m_currMethType, m_run.globals.ModelTitles(m_currMethType),
                       m_data->ColPresent(columns::VarAbundIndex)};
    if (!m_run.user.AskInputParams(params))
        return false;
    m_inputs = static_cast<const FitInputs&>(params);
    return true;
}

void clsMethManager::PushInputParameters()
{
    m_method->FitOp(m_inputs.FitOp);
    m_method->Z(m_inputs.Z);
    m_method->LAG(m_inputs.TimeLag);
    m_method->InitDep(m_inputs.InitProp);
    m_method->Mort(m_inputs.Mort);
    m_method->SetStartingEsts(m_inputs.SetStartingEstimates);
    m_method->PlotEvaluations(m_inputs.PlotEvaluations);
}

void clsMethManager::LAG(float value)
{
    m_inputs.TimeLag = checked::ToInt16(static_cast<double>(value));
}

bool clsMethManager::Start()
{
    const bool started = m_method->CalcInitEstimates();
    if (!started && !m_method->SetStartingEsts()) {
        m_lastExcuse = m_method->Excuse();
        Say(m_run.globals.ExcuseTexts(m_lastExcuse));
        if (UsesRegression(m_method->FitOp(), m_currMethType)) {
            Say(LoadResString(1907)); // a regression has no search that could be started by hand
            return false;
        }
        Say(LoadResString(1906));
        m_method->SetStartingEsts(true);
    }
    return !m_method->SetStartingEsts() || m_method->InputStartingEsts();
}

void clsMethManager::PrepareContours()
{
    if (!m_method->PlotEvaluations())
        return;
    if (!m_method->SetContourRanges()) {
        m_method->PlotEvaluations(false);
        return;
    }
    try {
        if (m_method->PlotInitContours())
            return;
        m_method->PlotEvaluations(false);
        Say("The minimisation is not shown: the start that failed left no range to draw. The fit goes on.",
            Icon::Information);
    } catch (const VeltError& error) {
        if (!error.IsUserCancel())
            m_run.reporter.Show({.text = "Unable to Generate Contours"});
        throw;
    }
}

void clsMethManager::PullResults()
{
    m_inputs = {.FitOp = m_method->FitOp(),
                .InitProp = m_method->InitDep(),
                .Mort = m_method->Mort(),
                .Z = m_method->Z(),
                .TimeLag = m_method->LAG(),
                .SetStartingEstimates = m_method->SetStartingEsts(),
                .PlotEvaluations = m_method->PlotEvaluations()};
    const std::vector<double> estimates = m_method->FinalEsts();
    m_results.RSqr = m_method->RSqr();
    std::size_t at = 0;
    for (const model_table::Quantity quantity : model_table::Of(m_currMethType).estimates)
        m_results.values[static_cast<std::size_t>(quantity)] = checked::ToFloat(estimates.at(at++));
}

void clsMethManager::Fit()
{
    m_run.window.StatusText(LoadResString(1504));
    m_run.window.HourglassOn();
    if (!m_method->CalcFinalEstimates())
        throw ProgramError(errors::kFitFailed, "ReadObj Failure.", "");
    m_method->CalcCPUEVectors();
    m_method->SetRSquared();
    PullResults();
    m_fitRemarks = RemarksOfFit(*m_method, *m_data);
    DisplayParameters(true);
    m_method->BuildModelGraphs();
    m_lastExcuse = excuse::kNone;
    m_run.window.StatusText(m_run.globals.Ready);
    m_run.window.HourglassOff();
}

void clsMethManager::RunFit(bool keepInputs)
{
    const FitInputs inputs = keepInputs ? m_inputs : FitInputs();
    Reset();
    m_inputs = inputs;

    BuildModelList();
    if (m_availableModels.empty()) {
        Say(LoadResString(1909) + "\n\n" + HintOnNoModel(*m_data), Icon::Exclamation, Buttons::OkCancel);
        return;
    }
    const bool noModelToKeep = m_currMethType == 0; // the first New Fit was cancelled
    if ((!keepInputs || noModelToKeep) && !ChooseModel())
        return;
    CreateModel();
    if (!HasEnoughPoints(model_table::Of(m_currMethType).minPoints)) {
        Say(LoadResString(1908), Icon::Exclamation, Buttons::Ok, help_topics::kTooFewPoints);
        m_methDefined = false;
        return;
    }
    if (!AskInputs()) {
        m_methDefined = false;
        return;
    }
    m_run.window.YieldToEvents();
    PushInputParameters();
    if (LagTooLong(*m_method, *m_data))
        RaiseSubscript(); // now, and not behind a search whose answer would have no replacement yield
    m_method->CalcDiscCatches();
    if (!Start()) {
        m_methDefined = false;
        return;
    }
    PrepareContours();
    Fit();
}

void clsMethManager::FitNewModel(bool keepInputs)
{
    m_lastExcuse = excuse::kNone;
    const std::optional<VeltError> failure = FailureOf([&] { RunFit(keepInputs); });
    if (!failure)
        return;
    if (m_method)
        m_lastExcuse = m_method->Excuse();
    const bool gaveUp = failure->number == kProgramErrorBase + errors::kFitFailed;
    const std::string hint = HintOn(*failure, *m_data, m_method.get());
    std::vector<Remark> remarks = RemarksOfFailure(*failure, m_method.get(), *m_data);
    m_run.reporter.HandleError(*failure, gaveUp ? "" : kFitSource, hint);
    Reset();
    m_fitRemarks = std::move(remarks);
    m_run.window.StatusText(m_run.globals.Ready);
    m_run.window.HourglassOff();
}

void clsMethManager::MinimisationOptions()
{
    modVeltGlobals::Settings& settings = m_run.globals.settings;
    MinimiserOptions options{.ConvergeOn = settings.ConvergeOn,
                             .BS = checked::ToInt16(settings.NumBootStraps),
                             .sngFTOL = settings.sngFTOL,
                             .sngXTOL = settings.sngXTOL,
                             .intMaxIts = settings.intMaxIts};
    if (!m_run.user.AskOptions(options))
        return;
    settings.sngFTOL = options.sngFTOL;
    settings.sngXTOL = options.sngXTOL;
    settings.intMaxIts = options.intMaxIts;
    settings.NumBootStraps = options.BS;
    settings.ConvergeOn = options.ConvergeOn;
}

std::int32_t clsMethManager::NumBootStraps() const
{
    return m_run.globals.settings.NumBootStraps;
}

void clsMethManager::NumBootStraps(std::int32_t value)
{
    m_run.globals.settings.NumBootStraps = value;
}

void clsMethManager::GenerateBootStraps()
{
    // Refits never draw on the contour graph; the switch is put back however the run ends.
    const bool plotEvaluations = m_method->PlotEvaluations();
    m_method->PlotEvaluations(false);
    const std::optional<VeltError> failure = FailureOf([this] {
        m_run.window.StatusText(m_run.globals.CalculatingBootstraps);
        m_run.window.HourglassOn();
        m_method->NumBootStraps(NumBootStraps());
        m_method->CalcBootStraps();
        if (!m_method->IsBSDone())
            throw UserCancelled("");
    });
    m_method->PlotEvaluations(plotEvaluations);
    m_run.window.StatusText(m_run.globals.Ready);
    m_run.window.HourglassOff();
    if (failure) // told without an hourglass over the box
        m_run.reporter.HandleError(*failure, "", HintOn(*failure, *m_data, m_method.get()));
}

bool clsMethManager::GetUserConfidenceIntervals()
{
    if (!IsBSDone()) {
        Say(LoadResString(1940), Icon::Information);
        return false;
    }
    RangeQuestion question{.caption = LoadResString(1509),
                           .prompt = LoadResString(1512),
                           .lowLabel = LoadResString(1510),
                           .highLabel = LoadResString(1511),
                           .low = static_cast<double>(m_ciLow),
                           .high = static_cast<double>(m_ciHigh)};
    if (!m_run.user.AskRange(question))
        return false;
    // Exactly these two comparisons: a low level above the high one passes. Deliberate.
    if (question.high > 1.0 || question.low < 0.0) {
        Say(LoadResString(1946));
        return false;
    }
    const Levels entered{.low = LevelOf(question.low), .high = LevelOf(question.high)};
    m_levelsBefore = Levels{.low = m_ciLow, .high = m_ciHigh};
    m_ciLow = entered.low;
    m_ciHigh = entered.high;
    return true;
}

void clsMethManager::DisplayBootStrapHistograms()
{
    try {
        LimitPosition(m_ciLow); // before any graph goes
        LimitPosition(m_ciHigh);
        m_run.window.ClearGraphs(true);
        m_method->CalcBootStrapHistos(m_ciLow, m_ciHigh);
        DisplayParameters(true);
    } catch (...) {
        if (m_levelsBefore) { // every further report would fail by them
            m_ciLow = m_levelsBefore->low;
            m_ciHigh = m_levelsBefore->high;
            m_levelsBefore.reset();
        }
        throw;
    }
    m_levelsBefore.reset();
}

std::int32_t clsMethManager::LimitPosition(float level) const
{
    const std::int32_t replicates = m_method->NumBootStraps();
    const double position = std::nearbyint(replicates * static_cast<double>(level)); // ties to even
    if (position == 0.0)
        return 1;
    if (!(position >= 1.0 && position <= replicates))
        RaiseSubscript();
    return static_cast<std::int32_t>(position);
}

float clsMethManager::CILimit(std::int32_t parameter, float level) const
{
    return m_method->SortedBootStrap(parameter, LimitPosition(level));
}

float clsMethManager::UpperCILimit(std::int32_t parameter) const
{
    return CILimit(parameter, m_ciHigh);
}

float clsMethManager::LowerCILimit(std::int32_t parameter) const
{
    return CILimit(parameter, m_ciLow);
}

std::vector<Remark> clsMethManager::Remarks() const
{
    std::vector<Remark> all = m_fitRemarks;
    if (m_projectionRemark)
        all.push_back(*m_projectionRemark);
    if (IsBSDone()) { // asked anew: the levels may have changed since
        const std::vector<Remark> ofLimits = RemarksOfLimits(*m_method, *m_data, LimitsOf(*this));
        all.insert(all.end(), ofLimits.begin(), ofLimits.end());
    }
    return all;
}

std::int32_t clsMethManager::GetUserDataPlot()
{
    return AskDataPlot(*m_data);
}

void clsMethManager::PlotData(std::int32_t code)
{
    if (code == kCPUECode || m_data->ColPresent(code))
        m_run.window.AddModelGraph(DataPlot(*m_data, code));
}
