// SPDX-License-Identifier: GPL-3.0-or-later
// Whole jobs of velt-batch: whatever the table and whatever is asked of it, a job ends with one of its four
// statuses, with results that can be read when there are some and a sentence when there are none. The first
// kChoices bytes choose the options, in the order in which they are taken below, which is that of the corpus:
// new ones go behind the others. The rest is the table, as it stands or as the numbers of one.
//
// The options have values that the command line accepts, so that most jobs get as far as a search; what it
// refuses is the business of CommandLine_fuzz.
#include "base/modVeltGlobals.h"
#include "batch/BatchFailure.h"
#include "batch/FitRequest.h"
#include "batch/RunBatch.h"
#include "files/AsciiText.h"
#include "files/CsvReader.h"
#include "fit/InputParams.h"
#include "fuzz/FuzzChecks.h"

#include <nlohmann/json.hpp>

#include <array>
#include <cmath>
#include <sstream>
#include <sys/mman.h>
#include <unistd.h>
#include <vector>

namespace
{
using Json = nlohmann::json;
using Words = std::vector<std::string>;

constexpr std::size_t kChoices = 32;
// Larger tables only make a job slower. Replicates that do not converge are drawn again hundreds of times.
constexpr std::size_t kMostTable = 2048;    ///< bytes of input
constexpr std::size_t kMostRefitted = 1024; ///< bytes of the table of a job with bootstraps

/// The table of a job: a file in memory under a path, as a job takes its table from a path only.
class MemoryFile
{
public:
    MemoryFile() : m_handle(memfd_create("table", 0)) { Demand(m_handle >= 0, "there is memory"); }

    std::string Path() const { return "/proc/self/fd/" + std::to_string(m_handle); }
    void Write(std::string_view bytes) const
    {
        Demand(ftruncate(m_handle, 0) == 0, "the file can be emptied");
        Demand(pwrite(m_handle, bytes.data(), bytes.size(), 0) == static_cast<ssize_t>(bytes.size()),
               "the file can be written");
    }

private:
    int m_handle;
};

/// The cells of a made-up table: three bytes a cell, a factor and a power of ten. Most tables that come from
/// changed bytes of a text are no tables; of these every one is.
class Cells
{
public:
    explicit Cells(Bytes bytes) : m_bytes(bytes) {}

    bool AtEnd() const { return m_bytes.size() < kCell; }
    std::string Next()
    {
        constexpr auto kSpecial = std::to_array<const char*>({"-1", "0", "3.4e38", "1e-38", "-2.5", "1e-45"});
        const unsigned power = m_bytes[0], factor = m_bytes[1] + 256U * m_bytes[2];
        m_bytes = m_bytes.subspan(kCell);
        if (power >= 256 - kSpecial.size())
            return kSpecial[power - (256 - kSpecial.size())];
        const int exponent = power < 200 ? static_cast<int>(power % 16) - 8 : static_cast<int>(power) - 235;
        return std::to_string(factor) + "e" + std::to_string(exponent);
    }

private:
    static constexpr std::size_t kCell = 3;
    Bytes m_bytes;
};

/// \param columns  beside that of the periods
std::string MadeTable(Bytes bytes, std::size_t columns, bool commaSeparated)
{
    std::string table = commaSeparated ? "Year" : "A made-up stock\nYear";
    for (std::size_t column = 1; column <= columns; ++column)
        table += ",C" + std::to_string(column);
    Cells cells(bytes);
    for (int year = 1; !cells.AtEnd(); ++year) {
        table += "\n" + std::to_string(year);
        for (std::size_t column = 0; column < columns; ++column)
            table += "," + (cells.AtEnd() ? "-1" : cells.Next());
    }
    return table + "\n";
}

/// What a job's options must name: the headings of its table, and the labels of its rows.
struct Headings {
    std::vector<std::string> texts{"Year"};
    std::vector<std::string> labels; ///< of the first column
};

Headings HeadingsOfCsv(std::string_view table)
{
    CsvReader reader(table);
    Headings headings{reader.Headings(), {}};
    for (CsvRow row; reader.Next(row);)
        headings.labels.push_back(row.cells.front().text);
    return headings;
}

Headings HeadingsOf(std::string_view table, bool commaSeparated)
{
    try {
        if (commaSeparated)
            return HeadingsOfCsv(table);
        const AsciiText text = ReadAsciiText(BytesOf(table));
        Headings headings{text.headings, {}};
        for (const double label : text.columns.front())
            headings.labels.push_back(std::to_string(std::lrint(std::clamp(label, -1e6, 1e6))));
        return headings;
    } catch (const ImportError&) {
        return {}; // the job refuses it too, which is as good an outcome
    }
}

Words GridTitles()
{
    modVeltGlobals::Globals globals;
    modVeltGlobals::CacheStrings(globals);
    Words titles;
    for (int column = 1; column <= 9; ++column)
        titles.push_back(globals.ColumnDisplayNames(column));
    return titles;
}

/// Nine choices, one a data column: the heading that fills it. 0 leaves it empty.
std::string ColumnsOption(Choices& choices, const Headings& headings)
{
    static const Words kTitles = GridTitles();
    std::string all;
    for (const std::string& title : kTitles) {
        const std::size_t heading = choices.Below(headings.texts.size() + 1);
        if (heading > 0)
            all += (all.empty() ? "" : ",") + headings.texts[heading - 1] + "=" + title;
    }
    return all;
}

/// Adds an option with one of its values; an empty one leaves it out.
template <typename List>
void Add(Words& words, const char* option, Choices& choices, const List& values)
{
    const std::string value(choices.OneOf(values));
    if (!value.empty())
        words.insert(words.end(), {option, value});
}

void AddInputs(Words& words, Choices& choices)
{
    Add(words, "--m", choices, std::to_array<const char*>({"", "0", "0.2", "0.9", "1e-30", "1e30", "5"}));
    Add(words, "--init-proportion", choices, std::to_array<const char*>({"", "1", "0.5", "0.001", "1e-30"}));
    Add(words, "--lag", choices, std::to_array<const char*>({"", "0", "1", "2", "7", "199", "32767"}));
    Add(words, "--z", choices, std::to_array<const char*>({"", "1", "2", "0.1", "1e-6", "50", "1e30"}));
}

void AddExclusions(Words& words, Choices& choices, const Headings& headings)
{
    std::string labels;
    for (std::size_t left = choices.Below(4); left > 0 && !headings.labels.empty(); --left)
        labels += (labels.empty() ? "" : ",") + headings.labels[choices.Below(headings.labels.size())];
    if (!labels.empty())
        words.insert(words.end(), {"--exclude", labels});
}

/// Where the fit is a regression, or has one parameter, the command line refuses some of these.
void AddStart(Words& words, Choices& choices, std::int32_t model, std::int32_t errorModel)
{
    constexpr auto kValues =
        std::to_array<const char*>({"", "0.3", "1000", "1", "1e5", "1e-6", "1e-30", "1e30", "3e38", "20"});
    const Words parameters = StartingParameters(model);
    std::string start;
    for (std::size_t i = 0; i < 2; ++i) { // models with one parameter leave the second choice unused
        const std::string value(choices.OneOf(kValues));
        if (!value.empty() && i < parameters.size())
            start += (start.empty() ? "" : ",") + parameters[i] + "=" + value;
    }
    const std::size_t fixed = choices.Below(6);
    if (start.empty() || UsesRegression(errorModel, model))
        return;
    words.insert(words.end(), {"--start", start});
    if (parameters.size() == 2 && (fixed == 1 || fixed == 2))
        words.insert(words.end(), {"--fix", parameters[fixed - 1]});
}

/// Limits small enough that a job is a matter of milliseconds.
void AddSearch(Words& words, Choices& choices, std::size_t tableBytes)
{
    Add(words, "--max-its", choices, std::to_array<const char*>({"40", "150", "10", "3", "1"}));
    constexpr auto kTolerances = std::to_array<const char*>({"", "1e-2", "1e-4", "1e-30", "10"});
    Add(words, "--ftol", choices, kTolerances);
    Add(words, "--xtol", choices, kTolerances);
    Add(words, "--converge-on", choices, std::to_array<const char*>({"either", "both"}));
    const std::size_t bootstraps = choices.Below(6);
    Words levels;
    Add(levels, "--ci", choices, std::to_array<const char*>({"", "0.025,0.975", "0,1", "0.4,0.6", "0,1e-9"}));
    if (bootstraps == 0 || tableBytes > kMostRefitted)
        return;
    words.insert(words.end(), {"--bootstraps", std::to_string(bootstraps), "--seed", "7"});
    words.insert(words.end(), levels.begin(), levels.end());
}

/// A job and what is to be known to judge its outcome.
struct Asked {
    std::string table;
    Words words;
    bool json = false;
    bool twice = false; ///< the same job a second time must end the same
    bool made = false;  ///< no text of the table is foreign
};

void AddModel(Words& words, Choices& choices)
{
    const std::size_t model = choices.Below(ModelNames().size());
    const std::size_t errorModel = choices.Below(ErrorModelNames().size());
    words.insert(words.end(), {"--model", ModelNames()[model], "--error", ErrorModelNames()[errorModel]});
    AddInputs(words, choices);
    AddStart(words, choices, static_cast<std::int32_t>(model) + 1, static_cast<std::int32_t>(errorModel) + 1);
}

Asked AskFor(Bytes input, const std::string& path)
{
    Choices choices(input, kChoices);
    const std::uint8_t bits = choices.Byte();
    const bool commaSeparated = (bits & 1U) != 0, made = (bits & 8U) != 0;
    const Bytes rest = choices.Rest().first(std::min(choices.Rest().size(), kMostTable));
    const std::size_t columns = 1 + choices.Below(9);
    Asked asked{made ? MadeTable(rest, columns, commaSeparated) : std::string(TextOf(rest)),
                {"fit", commaSeparated ? "--csv-data" : "--data", path},
                (bits & 2U) == 0,
                (bits & 4U) != 0,
                made};
    const Headings headings = HeadingsOf(asked.table, commaSeparated);
    asked.words.insert(asked.words.end(), {"--time-column", choices.OneOf(headings.texts)});
    asked.words.insert(asked.words.end(), {"--columns", ColumnsOption(choices, headings)});
    AddModel(asked.words, choices);
    AddSearch(asked.words, choices, asked.table.size());
    AddExclusions(asked.words, choices, headings);
    asked.words.insert(asked.words.end(), {"--format", asked.json ? "json" : "text"});
    return asked;
}

struct Outcome {
    int status = -1;
    std::string out, err;
    bool operator==(const Outcome&) const = default;
};

Outcome RunJob(const Words& words)
{
    std::ostringstream out, err;
    const int status = RunBatch(words, out, err);
    return {status, out.str(), err.str()};
}

/// What does not exist is null, and nothing is the name of a number that is none.
void CheckValues(const Json& value)
{
    if (value.is_number())
        Demand(std::isfinite(value.get<double>()), "numbers are finite");
    if (value.is_string())
        for (const char* name : {"nan", "inf", "-nan", "-inf"})
            Demand(value.get<std::string>() != name, "a number that is none is null", name);
    if (value.is_structured())
        for (const Json& item : value)
            CheckValues(item);
}

/// Neither results nor sentences write a number that is none. A foreign text may hold such words.
void DemandNumbers(std::string_view text)
{
    constexpr const char* kLetters = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ";
    while (!text.empty()) {
        const std::string_view word = text.substr(0, text.find_first_not_of(kLetters));
        for (const char* name : {"nan", "NaN", "NAN", "inf", "Inf", "INF", "infinity"})
            Demand(word != name, "a number is a number", text.substr(0, 100));
        text.remove_prefix(std::max<std::size_t>(word.size(), 1));
    }
}

Json ObjectOf(const std::string& out)
{
    const Json object = Json::parse(out, nullptr, false);
    Demand(object.is_object(), "results are one object", out);
    CheckValues(object);
    for (const Json& remark : object.at("Remarks"))
        DemandSentence(remark.at("Text").get<std::string>());
    return object;
}

void CheckFit(const std::string& out)
{
    const Json fit = ObjectOf(out);
    Demand(fit.at("Status") == "ok" && !fit.at("Estimates").empty(), "a fit has estimates");
    for (const Json& estimate : fit.at("Estimates"))
        Demand(estimate.is_number(), "an estimate is a number", fit.at("Estimates").dump());
    const Json& series = fit.at("Series");
    Demand(series.size() >= 2 && series.size() <= 201, "a fit has periods");
    if (!fit.at("ConfidenceIntervals").is_null())
        for (const Json& limits : fit.at("ConfidenceIntervals"))
            Demand(limits.at(0).is_number() && limits.at(0) <= limits.at(1), "limits rise", limits.dump());
}

void CheckFailedFit(const std::string& out)
{
    const Json failure = ObjectOf(out);
    Demand(failure.at("Status") == "failed", "a failure says so");
    DemandSentence(failure.at("Message").get<std::string>());
}

void Check(const Outcome& outcome, const Asked& asked)
{
    constexpr std::size_t kMostBytes = 1U << 18U; // 201 periods of 11 values
    Demand(outcome.out.size() < kMostBytes && outcome.err.size() < kMostBytes, "a job is brief");
    DemandShowable(outcome.out);
    DemandShowable(outcome.err);
    if (asked.made) {
        DemandNumbers(outcome.out);
        DemandNumbers(outcome.err);
    }
    const bool fitted = outcome.status == static_cast<int>(ExitStatus::Done);
    const bool failed = outcome.status == static_cast<int>(ExitStatus::FitFailed);
    const bool refused = outcome.status == static_cast<int>(ExitStatus::BadUsage) ||
                         outcome.status == static_cast<int>(ExitStatus::BadData);
    Demand(fitted || failed || refused, "a job has one of four statuses");
    Demand(outcome.out.empty() == (refused || (failed && !asked.json)),
           "results stand only where there are some");
    if (!fitted)
        Demand(outcome.err.starts_with("velt-batch: "), "a failure says whose it is", outcome.err);
    if (asked.json && fitted)
        CheckFit(outcome.out);
    if (asked.json && failed)
        CheckFailedFit(outcome.out);
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static const MemoryFile file;
    const Asked asked = AskFor({data, size}, file.Path());
    file.Write(asked.table);
    const Outcome outcome = RunJob(asked.words);
    Check(outcome, asked);
    if (asked.twice)
        Demand(RunJob(asked.words) == outcome, "the same job ends the same", outcome.out);
    return 0;
}
