// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/FitCommands.h"

#include "base/StringTable.h"

void FitCommands::PlotData()
{
    if (const std::int32_t series = m_project.Fits().GetUserDataPlot(); series != 0)
        m_project.Fits().PlotData(series);
}

/// Takes the graphs of the current fit away, if the user lets it go.
bool FitCommands::ClearFit()
{
    if (!m_project.MayClearFit())
        return false;
    m_project.TheRun().window.ClearGraphs(false);
    return true;
}

void FitCommands::NewModel()
{
    if (!ClearFit())
        return;
    m_project.Fits().FitNewModel(false);
    m_project.NoteFit();
    m_project.TheRun().window.SetUpDataGrid();
}

void FitCommands::NewParams()
{
    if (!ClearFit())
        return;
    m_project.Fits().FitNewModel(true);
    m_project.TheRun().window.SetUpDataGrid();
}

void FitCommands::ViewParameters()
{
    m_project.Fits().DisplayParameters(true);
}

void FitCommands::GenerateConfInts()
{
    clsMethManager& fits = m_project.Fits();
    Answer answer = Answer::Yes;
    if (fits.IsBSDone())
        answer = m_project.TheRun().reporter.Show(
            {.text = LoadResString(1945), .icon = Icon::Question, .buttons = Buttons::YesNoCancel});
    if (answer == Answer::Yes)
        fits.GenerateBootStraps();
    m_project.TheRun().window.EnableControls(); // limits of projections can be asked for now
    if (answer != Answer::Cancel && fits.IsBSDone())
        DisplayConfInts();
    m_project.View().KeepResultsInSight();
}

void FitCommands::DisplayConfInts()
{
    clsMethManager& fits = m_project.Fits();
    if (!fits.IsBSDone())
        fits.GenerateBootStraps();
    if (fits.GetUserConfidenceIntervals()) {
        fits.DisplayBootStrapHistograms();
        m_project.TheRun().window.EnableControls();
    }
    m_project.View().KeepResultsInSight();
}

void FitCommands::ReportConfInts()
{
    clsMethManager& fits = m_project.Fits();
    if (!fits.IsBSDone())
        fits.GenerateBootStraps();
    if (fits.IsBSDone() && fits.GetUserConfidenceIntervals())
        fits.DisplayBootStrapHistograms();
    m_project.TheRun().window.EnableControls();
}

void FitCommands::Settings()
{
    m_project.Fits().MinimisationOptions();
}
