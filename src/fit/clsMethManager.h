// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/Array1.h"
#include "data/clsVeltData.h"
#include "fit/InputParams.h"
#include "fit/Projections.h"
#include "fit/Remark.h"
#include "models/IMethod.h"
#include "models/ModelTable.h"

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

class ProjectFile;

/// The fit manager: the one object between the main window and the models. It owns the current model, the
/// inputs of the current fit and a copy of its results; the mathematics stays in the models.
class clsMethManager
{
public:
    explicit clsMethManager(Run& run);
    ~clsMethManager();
    clsMethManager(const clsMethManager&) = delete;
    clsMethManager& operator=(const clsMethManager&) = delete;

    /// Keeps the data set, which must outlive the manager, and starts with no fit.
    void Create(clsVeltData& data);
    void Reset();
    /// The project behind the data set, into which fits are logged; it must outlive the manager.
    void LogsInto(ProjectFile& project) { m_project = &project; }

    /// The whole way from the list of models to the report and the graphs. With `keepInputs` the model, the
    /// inputs and the two check boxes of the former fit stand; otherwise, or when no model was ever chosen,
    /// the user picks a model and starts from the defaults. Every way of stopping leaves no fit. Raises
    /// nothing: failures are told to the user.
    void FitNewModel(bool keepInputs);

    bool MethDefined() const { return m_methDefined; }
    bool IsBSDone() const;
    bool FitLogged() const { return m_fitLogged; }
    /// Yields 0 whatever the data set holds; the scenario count comes from the data set. Deliberate.
    std::int32_t NumProjScens() const { return 0; }
    bool DisplayParameters() const { return m_displayParameters; }
    void DisplayParameters(bool show);

    /// Prints the report: the values of the model itself, then limits and remarks as the window shows them.
    /// Raises nothing: what goes wrong is told to the user, and nothing is printed then.
    void PrintParameters(IPrinter& printer);

    void MinimisationOptions();

    void GenerateBootStraps();
    /// \return whether new levels were accepted \throws VeltError 9 for a level that is no 32-bit number,
    /// with
    ///         the levels as they were
    bool GetUserConfidenceIntervals();
    /// Histograms and report at the levels. \throws VeltError 9 when a level has no position among the
    ///         replicates; after any failure the levels are those from before the dialog
    void DisplayBootStrapHistograms();
    /// The replicate at the position nearest to level times count, without interpolation; position 0 is
    /// taken for 1. \throws VeltError 9 for any other position outside 1 to the count
    float UpperCILimit(std::int32_t parameter) const;
    float LowerCILimit(std::int32_t parameter) const;

    // Projections of the current fit under the scenarios of the data set; see projections. What stands
    // against one is told to the user.
    /// The scenarios that the user picks; none on Cancel, and silently none where the data set has none.
    std::vector<std::string> SelectProjections();
    /// The one scenario that the user picks; empty for none.
    std::string SelectProjection();
    /// Opens the graph of these scenarios, with the fit where ProjWithFit says so.
    /// \throws VeltError a trajectory that cannot be computed
    void Project(const std::vector<std::string>& titles);
    /// Asks for two levels and opens the graph of one scenario with its limits. No level is checked, and none
    /// is kept: the next time starts again at 0.05 and 0.95. Deliberate. \pre IsBSDone \throws VeltError 9 no
    /// replicate stands at a level; 2263 the user cancelled; otherwise as Project
    void DoProjCI(const std::string& title);

    /// What there is to say about the current fit, its last projection and, once there are bootstraps, its
    /// limits; after a fit that failed, about the failure. Empty when all is well, and gone with the fit.
    std::vector<Remark> Remarks() const;

    /// The column code the user picked: 1 to 15, 16 for CPUE, 0 for none.
    std::int32_t GetUserDataPlot();
    void PlotData(std::int32_t code);

    /// Reads a text file of periods, or a comma-separated one, into the data set. The user answers the
    /// questions of the import, is told what goes wrong and may try again. \return whether a table was
    /// imported; the data set is empty otherwise
    bool ImportASCIIFile(const std::string& path);
    /// The same for a project of version 2.0, whose columns and scenarios come across and nothing else.
    bool ImportVELT2File(const std::string& path);

    /// Writes the project; see ProjectFile. The project must have been given.
    void SaveAsVELT3();
    /// Logs the current fit under `name`, which is asked for when it is empty, and writes the project at
    /// once. \return false when the user gave no name: nothing has changed then, but that the next file
    /// operation is
    ///         still that of a log. Deliberate. \throws VeltError the fit could not be written: it is not
    ///         logged
    bool LogCurrentFit(const std::string& name = {});
    /// Brings a logged fit back: its data, its results, its graphs. It counts as not logged.
    /// \throws VeltError there is then no fit, and the data set is as it was
    void ReLoadFit(const clsFit& fit);

    // Copies of the results, filled when a fit is done; a value the model does not have keeps what it held.
    float Result(model_table::Quantity quantity) const
    {
        return m_results.values[static_cast<std::size_t>(quantity)];
    }
    float Lambda() const { return Result(model_table::Quantity::Lambda); }
    float N1() const { return Result(model_table::Quantity::N1); }
    float Q() const { return Result(model_table::Quantity::Q); }
    float FinalPopulation() const { return Result(model_table::Quantity::FinalPopulation); }
    float K() const { return Result(model_table::Quantity::K); }
    float R() const { return Result(model_table::Quantity::R); }
    float MSY() const { return Result(model_table::Quantity::MSY); }
    float RYield() const { return Result(model_table::Quantity::RYield); }
    float FinalBiomass() const { return Result(model_table::Quantity::FinalBiomass); }
    float RSqr() const { return m_results.RSqr; }

    std::int32_t NumBootStraps() const;
    void NumBootStraps(std::int32_t value);
    std::int32_t CurrMethType() const { return m_currMethType; }
    void CurrMethType(std::int32_t value) { m_currMethType = value; }
    bool PlotEvaluations() const { return m_inputs.PlotEvaluations; }
    void PlotEvaluations(bool on) { m_inputs.PlotEvaluations = on; }
    bool SetStartingEstimates() const { return m_inputs.SetStartingEstimates; }
    void SetStartingEstimates(bool on) { m_inputs.SetStartingEstimates = on; }
    std::int32_t ErrorModel() const { return m_inputs.FitOp; }
    void ErrorModel(std::int32_t value) { m_inputs.FitOp = value; }
    float NaturalMortality() const { return m_inputs.Mort; }
    void NaturalMortality(float value) { m_inputs.Mort = value; }
    float InitialProportion() const { return m_inputs.InitProp; }
    void InitialProportion(float value) { m_inputs.InitProp = value; }
    float LAG() const { return static_cast<float>(m_inputs.TimeLag); }
    void LAG(float value); ///< rounded to a whole number of periods
    float Z() const { return m_inputs.Z; }
    void Z(float value) { m_inputs.Z = value; }
    float CIHigh() const { return m_ciHigh; }
    void CIHigh(float level) { m_ciHigh = level; }
    float CILow() const { return m_ciLow; }
    void CILow(float level) { m_ciLow = level; }
    /// The graph of a projection draws the fit as well.
    bool ProjWithFit() const { return m_projWithFit; }
    void ProjWithFit(bool on) { m_projWithFit = on; }

    const std::vector<std::string>& AvailableModels() const { return m_availableModels; }
    /// The current model, or nothing.
    const IMethod* Method() const { return m_method.get(); }
    /// Why the last FitNewModel gave no fit, as a model's Excuse; 0 when it did not stop at a model.
    std::int32_t LastExcuse() const { return m_lastExcuse; }
    const Run& TheRun() const { return m_run; }

private:
    struct Levels {
        float low;
        float high;
    };
    struct FitResults {
        std::array<float, model_table::kQuantities> values{}; ///< by Quantity
        float RSqr = 0.0F;
    };

    void TakeStoredFit(const clsFit& fit);
    void BuildModelList();
    bool HasEnoughPoints(std::int32_t needed) const;
    bool ChooseModel();
    void CreateModel();
    bool AskInputs();
    bool Start();
    void PrepareContours();
    void PushInputParameters();
    void PullResults();
    void Fit();
    void RunFit(bool keepInputs);
    bool MayProject();
    void ShowProjection(projections::Projected projected);
    std::int32_t LimitPosition(float level) const;
    float CILimit(std::int32_t parameter, float level) const;
    void Say(const std::string& text, Icon icon = Icon::Exclamation, Buttons buttons = Buttons::Ok,
             const std::string& helpTopic = {});

    Run& m_run;
    clsVeltData* m_data = nullptr;
    ProjectFile* m_project = nullptr;
    std::unique_ptr<IMethod> m_method;
    std::int32_t m_currMethType = 0;
    std::int32_t m_lastExcuse = 0;
    bool m_methDefined = false;
    bool m_fitLogged = false;
    bool m_projWithFit = false;
    float m_ciHigh = 0.975F;
    float m_ciLow = 0.025F;
    std::optional<Levels> m_levelsBefore; ///< from before the dialog, until the new ones have been shown
    FitInputs m_inputs;
    FitResults m_results;
    bool m_displayParameters = false;
    std::vector<Remark> m_fitRemarks;
    std::optional<Remark> m_projectionRemark; ///< on the last projection of this fit
    std::int32_t m_projCount = 0;             ///< projections so far, by which their graphs are numbered
    std::vector<std::string> m_availableModels;
    Array1<bool, models::kCount> m_modelAvailable;
};
