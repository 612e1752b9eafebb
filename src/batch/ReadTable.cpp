// SPDX-License-Identifier: GPL-3.0-or-later
#include "batch/ReadTable.h"

#include "base/FileErrors.h"
#include "base/ForeignText.h"
#include "base/NumberText.h"
#include "base/Text.h"
#include "base/Windows1252.h"
#include "batch/BatchFailure.h"
#include "batch/CsvReader.h"
#include "data/ImportText.h"
#include "data/clsVeltData.h"
#include "files/ReadWholeFile.h"

#include <algorithm>
#include <filesystem>
#include <optional>

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

/// The number in a cell; a missing one counts as the data set's own mark, except for a time.
double ValueOf(const CsvCell& cell, const std::string& heading, bool isTime)
{
    if (IsMissing(cell.text) && !isTime)
        return clsVeltData::kMissing;
    const std::optional<double> value = number_text::Parse(cell.text);
    if (!value)
        throw BatchFailure(ExitStatus::BadData, "Line " + std::to_string(cell.line) + ", column \"" +
                                                    Quotable(heading) + "\": \"" + Quotable(cell.text) +
                                                    "\" is not a number.");
    return *value;
}

/// The columns of a comma-separated file that the request uses, described by the file's name.
AsciiText TableOf(std::string_view text, const FitRequest& request)
{
    CsvReader reader(text);
    const std::vector<std::size_t> used = UsedColumns(reader.Headings(), request);
    AsciiText table;
    table.description = Trim(ToUtf8(std::filesystem::path(request.file).filename().string()));
    for (const std::size_t column : used)
        table.headings.push_back(reader.Headings()[column]);
    table.columns.resize(used.size());
    CsvRow row;
    while (reader.Next(row)) {
        table.lines.push_back(row.line);
        for (std::size_t i = 0; i < used.size(); ++i) {
            const std::string& heading = table.headings[i];
            const CsvCell& cell = row.cells[used[i]];
            table.Add(i, ValueOf(cell, heading, heading == request.timeColumn),
                      IsMissing(cell.text) ? "" : cell.text);
        }
    }
    return table;
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
