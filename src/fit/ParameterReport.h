// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <vector>

class clsMethManager;

/// The content of the parameter report: names on the left, values on the right, in three blocks, and
/// remarks under them where there are any. It holds
/// texts only; the window, the printer and the batch tool lay them out.
class ParameterReport
{
public:
    struct Row {
        std::string name;
        std::string value;
    };

    static constexpr const char* kRemarksHeading = "Remarks";

    /// Built from the manager's copies of the results, so after they have been pulled from the model.
    static ParameterReport Of(const clsMethManager& manager);

    std::string modelTitle;
    std::string fitTitle;
    std::string rSqr; ///< three decimals
    std::vector<Row> inputs;
    std::vector<Row> estimates;
    std::vector<Row> intervals;       ///< empty without bootstraps
    std::string intervalLevels;       ///< "0.025 - 0.975"; empty without bootstraps
    std::vector<std::string> remarks; ///< numbered sentences; mostly empty

    /// What the further lines of a remark begin with, so that they stand below its first word.
    static std::string HangingOf(const std::string& remark);

    /// The whole report as lines of text, as the terminal shows it.
    std::string AsText() const;
};
