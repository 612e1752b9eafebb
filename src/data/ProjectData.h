// SPDX-License-Identifier: GPL-3.0-or-later
// Between the data set and the records of a project file.
#pragma once

#include "base/VeltError.h"
#include "data/clsVeltData.h"
#include "files/ProjectRecords.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// The data of the project, or of the body of a fit: then with the system columns and the toggles.
project_file::DataRecord DataRecordOf(const clsVeltData& data, bool ofFit);

/// Header, data, scenarios and fit index as they go into the project file.
project_file::Project ProjectOf(const clsVeltData& data);

/// What opening a project says beside the data set.
struct OpenedProject {
    clsVeltData data;
    /// A conversion that failed: the columns are then as the file has them.
    std::optional<VeltError> failedConversion;
};

/// The data set of a project file. Equal titles of scenarios and names of fits are numbered, which is a
/// change of the data set. \throws RecordError the file is damaged \throws VeltError 6 a time range or a
/// value of a scenario that does not fit 32 bits, with its sentence
OpenedProject ReadProjectData(std::string_view file, Run& run);

/// Scenarios of a file behind those of `data`. Equal titles are numbered, which is a change of the data set.
/// \throws VeltError 6 a value that does not fit 32 bits, 5 one that is no number, with its sentence
void TakeScenarios(clsVeltData& data, const std::vector<project_file::ScenarioRecord>& records);

/// The data of a fit's body in place of those in `data`: columns, what follows from them, and toggles. Its
/// user columns that differ from those here are a change of the data set.
/// \throws VeltError 5, 6, 11 a conversion failed; `data` is then as it was
void TakeDataOfFit(clsVeltData& data, const project_file::DataRecord& record);

/// Nothing when a project file can hold every character of `name`, else a sentence for the user.
std::optional<std::string> RefusalOfName(std::string_view name);
