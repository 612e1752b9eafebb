// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/OpenProject.h"

/// The commands of the Fit and Data menus and of the report's button.
class FitCommands
{
public:
    explicit FitCommands(OpenProject& project) : m_project(project) {}

    void PlotData();
    void NewModel();
    void NewParams();
    void ViewParameters();
    void GenerateConfInts();
    void DisplayConfInts();
    /// The report's button differs from the menu: a broken run ends it without a further message.
    void ReportConfInts();
    void Settings();

private:
    bool ClearFit();

    OpenProject& m_project;
};
