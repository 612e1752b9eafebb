// SPDX-License-Identifier: GPL-3.0-or-later
#include "batch/ReadTable.h"

#include "base/FileErrors.h"
#include "base/ForeignText.h"
#include "batch/BatchFailure.h"
#include "data/ImportText.h"
#include "data/clsVeltData.h"
#include "files/CsvText.h"
#include "files/ReadWholeFile.h"

#include <algorithm>

namespace
{
/// The columns of a file that the request uses, counted from 0, in the order of the file.
std::vector<std::size_t> UsedColumns(const std::vector<std::string>& headings, const FitRequest& request)
{
    std::vector<int> used{TextColumn(headings, request.timeColumn)};
    for (const FitRequest::Assignment& assignment : request.columns)
        used.push_back(TextColumn(headings, assignment.heading));
    std::sort(used.begin(), used.end());
    used.erase(std::unique(used.begin(), used.end()), used.end());
    std::vector<std::size_t> columns(used.size());
    std::transform(used.begin(), used.end(), columns.begin(),
                   [](int column) { return static_cast<std::size_t>(column - 1); });
    return columns;
}

/// The columns of a comma-separated file that the request uses, described by the file's name.
AsciiText TableOf(std::string_view text, const FitRequest& request)
{
    try {
        CsvReader reader(text);
        const std::vector<std::size_t> used = UsedColumns(reader.Headings(), request);
        const auto time = static_cast<std::size_t>(TextColumn(reader.Headings(), request.timeColumn) - 1);
        AsciiText table = TakeColumns(reader, used, time);
        table.description = DescriptionFromName(request.file);
        return table;
    } catch (const ImportError& error) { // its place is the whole sentence
        throw BatchFailure(ExitStatus::BadData, error.place);
    }
}

/// What the import asks, answered for a command line.
class BatchAnswers : public IImportQuestions
{
public:
    explicit BatchAnswers(BatchUser& user) : m_user(user) {}

    bool GoesOnWithoutDescription() override { return true; } // no reason to stop
    bool Assigns(AsciiWizard& wizard) override { return m_user.AskAsciiWizard(wizard); }
    bool TakesAsConsecutive(const UnevenLabels& labels) override
    {
        // Nobody is there to look at the file and say that all is well.
        throw BatchFailure(ExitStatus::BadData,
                           labels.Sentence() +
                               " Give a period without data a row of its own, with -1 in its columns.");
    }

private:
    BatchUser& m_user;
};

void ImportFile(clsVeltData& data, IImportQuestions& answers, const FitRequest& request)
{
    if (!request.commaSeparated) {
        data.ImportASCIIFile(request.file, answers);
        return;
    }
    const std::vector<std::uint8_t> bytes = ReadWholeFile(request.file, CheckTextSize);
    const std::string_view text(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    ImportTable(data, request.file, TableOf(text, request), answers);
}

void Import(clsVeltData& data, BatchUser& user, const FitRequest& request)
{
    const std::string file = Quotable(request.file) + ": ";
    const auto refuse = [&](const std::string& sentence, const std::string& place = {}) {
        throw BatchFailure(ExitStatus::BadData, file + sentence + (place.empty() ? "" : "\n" + place));
    };
    BatchAnswers answers(user);
    try {
        ImportFile(data, answers, request);
    } catch (const BatchFailure& failure) {
        throw BatchFailure(failure.status, file + failure.message);
    } catch (const ImportError& error) {
        refuse(error.description, error.place);
    } catch (const FileError& error) {
        refuse(error.description, error.reason);
    } catch (const VeltError& error) {
        if (error.IsUserCancel()) // only the wizard's part of the answers cancels
            throw BatchFailure(ExitStatus::BadUsage, user.usageError);
        refuse(error.description);
    }
}

/// What unticking the period does at the screen.
void Exclude(clsVeltData& data, std::int32_t label)
{
    const std::int64_t row = std::int64_t{label} - data.MinTimeP() + 1;
    if (row < 1 || row > data.TimeInts())
        throw BatchFailure(ExitStatus::BadUsage, "--exclude: there is no period " + std::to_string(label) +
                                                     "; the table runs from " +
                                                     std::to_string(data.MinTimeP()) + " to " +
                                                     std::to_string(data.MaxTimeP()) + ".");
    data.ToggleOut(static_cast<int>(row));
}
} // namespace

void ExcludePeriods(clsVeltData& data, const FitRequest& request)
{
    for (const std::int32_t label : request.exclude)
        Exclude(data, label);
}

void ReadTable(clsVeltData& data, BatchUser& user, const FitRequest& request)
{
    Import(data, user, request);
    ExcludePeriods(data, request);
}
