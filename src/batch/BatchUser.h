// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/Ports.h"
#include "batch/FitRequest.h"

#include <string>
#include <vector>

/// The column of `headings`, counted from 1, that has this heading.
/// \throws BatchFailure BadUsage when there is none or more than one
int TextColumn(const std::vector<std::string>& headings, const std::string& heading);

/// The person at the desk, played by a command line: every question of the workflow is answered from the
/// request, and what the program says is kept for the terminal. It decides nothing the request does not hold;
/// a question without an answer there is cancelled.
class BatchUser : public IUser
{
public:
    /// `request` must outlive the user.
    explicit BatchUser(const FitRequest& request) : m_request(request) {}

    std::vector<std::string> messages;  ///< texts of the boxes, in order
    std::string usageError;             ///< a heading or grid title that does not exist
    std::vector<std::string> available; ///< titles of the models that the data allow
    bool modelMissing = false;          ///< the wanted model was not among them
    bool startMissing = false;          ///< starting values were asked for and not in the request

    bool Said(const std::string& text) const; ///< a box began with this text
    /// Every message, one a line, or `otherwise` when there was none.
    std::string AllMessages(const std::string& otherwise) const;

    Answer Show(const Message& message) override;
    std::optional<std::string> InputBox(const std::string& prompt, const std::string& title,
                                        const std::string& suggestion) override;
    std::optional<std::string> AskFileToOpen(const FileQuestion&) override { return std::nullopt; }
    std::optional<std::string> AskFileToSave(const FileQuestion&) override { return std::nullopt; }
    bool AskSelection(Selection& selection) override;
    bool AskRange(RangeQuestion& question) override;
    bool AskInputParams(InputParams& params) override;
    bool AskStartVals(StartVals& starts) override;
    bool AskContourRange(ContourRange& range) override;
    bool AskOptions(MinimiserOptions& options) override;
    bool AskAsciiWizard(AsciiWizard& wizard) override;
    // What only someone at a table is asked.
    bool AskListPicker(ListPicker&) override { return false; }
    bool AskNumberFormat(NumberFormatChoice&) override { return false; }
    bool AskFont(CellFont&) override { return false; }
    bool AskNewDataSet(NewDataSet&) override { return false; }
    void ShowHelp(const std::string&) override {}

private:
    const FitRequest& m_request;
    bool m_startTyped = false;
};
