// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

class clsVeltData;

/// The scenarios of a comma-separated file: heading Scenario,Units,Time,Value, one row a future period.
struct ScenarioFile {
    struct Scenario {
        std::string title;
        std::int32_t vecType = 0; ///< see vec_type
        std::int32_t firstTime = 0;
        std::size_t line = 0;       ///< of its first row
        std::vector<double> values; ///< one a period, at least 0, within 32 bits when rounded
    };
    std::string path;
    std::vector<Scenario> scenarios; ///< at least one, all of one length, in the order of the file
};

/// Takes a file apart. \param path for messages
/// \throws BatchFailure BadData with the line: rows out of order or apart, unequal lengths, a value that is
///         none, negative or too large, units that are none, a title that is empty, taken, too long or "Fit"
ScenarioFile ReadScenarios(std::string_view text, const std::string& path);

/// The same from the disk. \throws BatchFailure BadData also for a file that cannot be read
ScenarioFile ReadScenarioFile(const std::string& path);

/// Puts the scenarios in place of those that the data set has. \pre a fit stands: it says which period is the
/// last one \throws BatchFailure BadData times that do not run on from it, more periods than there is room
/// for
void TakeScenarios(clsVeltData& data, const ScenarioFile& file);
