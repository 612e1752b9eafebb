// SPDX-License-Identifier: GPL-3.0-or-later
#include "batch/ReadTable.h"

#include "base/NumberText.h"
#include "base/VeltError.h"
#include "batch/BatchFailure.h"
#include "batch/CsvTable.h"
#include "data/clsVeltData.h"
#include "files/AsciiText.h"
#include "files/ReadWholeFile.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <stdlib.h>
#include <unistd.h>

namespace
{
/// A file of our own in the system's directory for such, gone when the object is.
class ScratchFile
{
public:
    explicit ScratchFile(const std::string& content)
    {
        std::error_code failure;
        m_path = (std::filesystem::temp_directory_path(failure) / "velt-batch-XXXXXX").string();
        const int handle = mkstemp(m_path.data());
        if (handle < 0)
            throw BatchFailure(ExitStatus::BadData, "No scratch file can be made as " + m_path + ".");
        close(handle);
        std::ofstream out(m_path, std::ios::binary);
        out << content;
        if (!out.flush()) {
            std::filesystem::remove(m_path, failure);
            throw BatchFailure(ExitStatus::BadData, "The scratch file " + m_path + " cannot be written.");
        }
    }
    ScratchFile(const ScratchFile&) = delete;
    ScratchFile& operator=(const ScratchFile&) = delete;
    ~ScratchFile()
    {
        std::error_code ignored;
        std::filesystem::remove(m_path, ignored);
    }
    const std::string& Path() const { return m_path; }

private:
    std::string m_path;
};

bool IsUsed(const std::string& heading, const FitRequest& request)
{
    return heading == request.timeColumn ||
           std::any_of(request.columns.begin(), request.columns.end(),
                       [&](const FitRequest::Assignment& a) { return a.heading == heading; });
}

/// A cell as a word of the import's text: a missing value is -1 there.
std::string WordOf(const CsvTable& table, std::size_t column, const CsvTable::Row& row, bool isTime)
{
    const std::string& cell = row.cells[column];
    if (IsMissing(cell) && !isTime)
        return number_text::Plain(clsVeltData::kMissing);
    if (!number_text::Parse(cell))
        throw BatchFailure(ExitStatus::BadData, "Line " + std::to_string(row.line) + ", column \"" +
                                                    table.headings[column] + "\": \"" + cell +
                                                    "\" is not a number.");
    return cell;
}

/// The columns of the table that the request uses, as the text that the import reads. Their own headings go
/// to `headings`, because a heading of that text is one word.
std::string ImportText(const CsvTable& table, const FitRequest& request, std::vector<std::string>& headings)
{
    std::vector<std::size_t> used;
    std::string text = std::filesystem::path(request.file).filename().string() + "\n";
    for (std::size_t column = 0; column < table.headings.size(); ++column) {
        if (!IsUsed(table.headings[column], request))
            continue;
        used.push_back(column);
        headings.push_back(table.headings[column]);
        text += "column" + std::to_string(used.size()) + " ";
    }
    for (const CsvTable::Row& row : table.rows) {
        text += "\n";
        for (const std::size_t column : used)
            text.append(WordOf(table, column, row, table.headings[column] == request.timeColumn)).append(" ");
    }
    return text + "\n";
}

void RefuseUnknownHeadings(const CsvTable& table, const FitRequest& request)
{
    std::vector<std::string> wanted{request.timeColumn};
    for (const FitRequest::Assignment& assignment : request.columns)
        wanted.push_back(assignment.heading);
    for (const std::string& heading : wanted) {
        const auto count = std::count(table.headings.begin(), table.headings.end(), heading);
        if (count > 1)
            throw BatchFailure(ExitStatus::BadUsage, AmbiguousHeading(heading));
        if (count == 1)
            continue;
        std::string all;
        for (const std::string& name : table.headings)
            all += (all.empty() ? "\"" : ", \"") + name + "\"";
        throw BatchFailure(ExitStatus::BadUsage,
                           "The file has no column \"" + heading + "\"; it has " + all + ".");
    }
}

std::string CsvAsImportText(const FitRequest& request, std::vector<std::string>& headings)
{
    try {
        const std::vector<std::uint8_t> bytes = ReadWholeFile(request.file, CheckTextSize);
        const CsvTable table = ReadCsvTable({reinterpret_cast<const char*>(bytes.data()), bytes.size()});
        RefuseUnknownHeadings(table, request);
        return ImportText(table, request, headings);
    } catch (const ImportError& error) {
        throw BatchFailure(ExitStatus::BadData, request.file + ": " + error.description + "\n" + error.place);
    } catch (const VeltError& error) {
        throw BatchFailure(ExitStatus::BadData, request.file + ": " + error.description);
    } catch (const BatchFailure& failure) {
        throw BatchFailure(failure.status, request.file + ": " + failure.message);
    }
}

void Import(clsVeltData& data, BatchUser& user, const FitRequest& request, const std::string& path)
{
    if (data.ImportASCIIFile(path))
        return;
    if (!user.usageError.empty())
        throw BatchFailure(ExitStatus::BadUsage, user.usageError);
    throw BatchFailure(ExitStatus::BadData,
                       request.file + ": " + user.AllMessages("The import ended without a table."));
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
    const int period = static_cast<int>(row);
    if (!data.ToggledIn(period))
        return;
    data.ToggledIn(period, false);
    data.NNtPoints(data.NNtPoints() - 1);
}
} // namespace

void ReadTable(clsVeltData& data, BatchUser& user, const FitRequest& request)
{
    if (request.commaSeparated) {
        const ScratchFile text(CsvAsImportText(request, user.headings));
        Import(data, user, request, text.Path());
        data.DSFName(request.file);
    } else {
        Import(data, user, request, request.file);
    }
    for (const std::int32_t label : request.exclude)
        Exclude(data, label);
}
