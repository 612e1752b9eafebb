// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/MenuState.h"

#include "models/IMethod.h"

MenuState MenuStateOf(const RunState& run)
{
    const bool working = run.fileOpen && !run.editMode;
    // Without a stock-recruitment rule the recruitment index model cannot be carried forward.
    const bool projectable = run.projScenarios > 0 && run.currMethType != models::kRecruitmentIndex;

    MenuState menu;
    menu.file = !run.editMode;
    menu.options = !run.editMode;
    menu.data = working;
    menu.fit = working;
    menu.projections = working;
    menu.graph = run.anyGraph; // overrides file and Edit Mode: entering Edit Mode closes all graphs

    menu.save = menu.saveAs = menu.print = menu.textExport = menu.close = run.fileOpen;
    menu.editMode = run.fileOpen;
    menu.fileDescription = run.fileOpen;
    menu.dataPlots = run.fileOpen;

    menu.inEditMode = run.editMode;
    menu.rows = menu.columns = menu.cut = run.editMode && run.fileOpen;
    menu.paste = menu.cut && run.clipboardHasText;
    menu.copy = menu.formats = run.fileOpen; // looking at data is not editing them

    menu.newModel = menu.fitManager = true; // their top menu decides
    menu.newParams = run.fitEverMade;
    menu.parameters = run.fitDefined;
    menu.generateConfInts = menu.displayConfInts = run.fitDefined;

    menu.viewProj = run.fitDefined;
    menu.project = run.fitDefined && projectable;
    menu.projWithCI = run.bootstrapsDone && projectable;
    return menu;
}
