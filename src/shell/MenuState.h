// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>

/// What the availability of the commands depends on.
struct RunState {
    bool editMode = false;       ///< "Edit Mode" is checked
    bool fileOpen = false;       ///< a data set is loaded
    bool fitDefined = false;     ///< the fit manager holds a fit
    bool bootstrapsDone = false; ///< that fit has its bootstraps
    std::int32_t projScenarios = 0;
    std::int32_t currMethType = 0; ///< model of the fit
    bool fitEverMade = false;      ///< a New Fit has run on this data set, or a logged fit was loaded
    bool anyGraph = false;         ///< a graph window exists
    bool clipboardHasText = true;  ///< as far as it is known
};

/// Which commands can be given; one member a command, named after its menu entry.
struct MenuState {
    // top menus
    bool file = false, edit = true, data = false, fit = false, projections = false, graph = false,
         options = false, help = true;
    bool inEditMode = false; ///< the mark at "Edit Mode"
    // entries
    bool newData = true, open = true, save = false, saveAs = false, print = false, textExport = false,
         close = false, editMode = false, fileDescription = false, rows = false, columns = false, cut = false,
         copy = false, paste = false, formats = false, dataPlots = false, newModel = false, newParams = false,
         parameters = false, generateConfInts = false, displayConfInts = false, fitManager = false,
         viewProj = false, project = false, projWithCI = false;

    bool operator==(const MenuState&) const = default;
};

/// The one place that decides what is available when. It says what the state of the run allows; a command
/// that is not built yet stays disabled whatever stands here.
MenuState MenuStateOf(const RunState& run);
