// SPDX-License-Identifier: GPL-3.0-or-later
// What docs/coverage.csv counted is told in three more places; they must not drift from it.
#include "batch/BatchJob.h"
#include "support/CsvTable.h"
#include "support/SimulatedStock.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <fstream>
#include <sstream>

namespace
{
std::string Document(const std::string& name)
{
    std::ostringstream text;
    text << std::ifstream(std::string(VELT_DOCS) + "/" + name, std::ios::binary).rdbuf();
    EXPECT_FALSE(text.str().empty()) << name;
    return text.str();
}

bool Has(const std::string& text, const std::string& part)
{
    return text.find(part) != std::string::npos;
}

/// The lines of coverage.csv that a condition picks.
class Coverage
{
public:
    Coverage() : m_table(ReadCsvTable(Document("coverage.csv"))) {}

    /// The cell of the only line of a model, an error model and a parameter.
    std::string Cell(const std::string& model, const std::string& error, const std::string& parameter,
                     const std::string& heading) const
    {
        std::vector<std::string> found;
        for (const CsvTable::Row& row : m_table.rows) {
            if (At(row, "model") == model && At(row, "error") == error && At(row, "parameter") == parameter)
                found.push_back(At(row, heading));
        }
        EXPECT_EQ(found.size(), 1U) << model << " " << error << " " << parameter;
        return found.empty() ? "0" : found.front();
    }
    /// Whole per cent, a half rounded up.
    long Held(const std::string& model, const std::string& error, const std::string& parameter) const
    {
        return std::lround(std::stod(Cell(model, error, parameter, "covered %")));
    }
    /// From the parameter held least often to the one held most often, "84-86" or "89". Two quantities do not
    /// count: R. Yield of constant recruitment, which no fit moves at an initial proportion of 1, and the
    /// highest point of the yield curve, which the program does not report.
    /// \param model  empty for all models
    std::string Range(const std::string& model, const std::string& error, const std::string& between) const
    {
        std::vector<long> held;
        for (const CsvTable::Row& row : m_table.rows) {
            const bool known =
                (At(row, "model") == "constant-recruitment" && At(row, "parameter") == "RYield") ||
                At(row, "parameter") == "MSY (peak)";
            if (!known && (model.empty() || At(row, "model") == model) && At(row, "error") == error)
                held.push_back(std::lround(std::stod(At(row, "covered %"))));
        }
        if (held.empty())
            return "nothing";
        const auto [low, high] = std::minmax_element(held.begin(), held.end());
        return *low == *high ? std::to_string(*low) : std::to_string(*low) + between + std::to_string(*high);
    }

private:
    const std::string& At(const CsvTable::Row& row, const std::string& heading) const
    {
        const auto found = std::find(m_table.headings.begin(), m_table.headings.end(), heading);
        return row.cells.at(static_cast<std::size_t>(found - m_table.headings.begin()));
    }
    CsvTable m_table;
};

/// A mean position with two decimals.
std::string Position(const Coverage& coverage, const std::string& model, const std::string& stock)
{
    std::ostringstream text;
    text.setf(std::ios::fixed);
    text.precision(2);
    text << std::stod(coverage.Cell(model, "gamma", stock, "mean position"));
    return text.str();
}

/// What a gamma bootstrap of a simulated stock says about its limits.
std::string LimitsShiftedOf(const std::string& model, double recruits)
{
    SimulatedStock stock;
    stock.recruits = recruits;
    const std::vector<double> catches = stock.Catches(0.05);
    std::string rows = "period,catch,effort\n";
    for (std::size_t t = 0; t < catches.size(); ++t)
        rows += std::to_string(t + 1) + "," + std::to_string(catches[t]) + "," +
                std::to_string(stock.effort[t]) + "\n";
    const ScratchDirectory directory;
    const BatchJob job = RunJob({"fit", "--csv-data", directory.File("t.csv", rows), "--time-column",
                                 "period", "--columns", "catch=Tot. Catch Nums,effort=Effort", "--model",
                                 model, "--error", "gamma", "--bootstraps", "20", "--seed", "1"});
    EXPECT_EQ(job.status, 0) << job.err;
    return job.err;
}

/// As a manual page writes it, so that a hyphen is not typeset as a dash.
std::string WithPlainHyphens(const std::string& text)
{
    std::string escaped;
    for (const char c : text)
        escaped += c == '-' ? "\\-" : std::string(1, c);
    return escaped;
}

std::string RightAligned(const std::string& text, std::size_t width)
{
    return std::string(width - std::min(width, text.size()), ' ') + text;
}
} // namespace

TEST(CoverageOfLimits, TheRemarkOnShiftedLimitsTellsWhatWasCountedForItsScheme)
{
    const Coverage coverage;
    const auto expected = [&coverage](const std::string& model, const std::string& stock) {
        return "In " + coverage.Cell(model, "gamma", stock, "data sets") +
               " simulated data sets with a mean position of " + Position(coverage, model, stock) +
               ", 90 % limits of " + stock + " held the truth in " +
               std::to_string(coverage.Held(model, "gamma", stock)) + " % and those of q in " +
               std::to_string(coverage.Held(model, "gamma", "Q")) + " %. Do not use the limits.";
    };
    const std::string closed = LimitsShiftedOf("no-recruitment", 0.0);
    EXPECT_TRUE(Has(closed, expected("no-recruitment", "N1"))) << closed;
    const std::string open = LimitsShiftedOf("constant-recruitment", 10000.0 * std::expm1(0.2));
    EXPECT_TRUE(Has(open, expected("constant-recruitment", "K"))) << open;
}

TEST(CoverageOfLimits, ThePageOnRemarksTellsTheSame)
{
    const Coverage coverage;
    const auto held = [&coverage](const std::string& model, const std::string& parameter) {
        return std::to_string(coverage.Held(model, "gamma", parameter)) + " %";
    };
    const std::string page = Document("remarks.md");
    const std::string expected =
        "In " + coverage.Cell("no-recruitment", "gamma", "N1", "data sets") +
        " simulated data sets, 90 % limits of no recruitment held the truth of N1 in " +
        held("no-recruitment", "N1") + " and that of q in " + held("no-recruitment", "Q") +
        " at a mean position of " + Position(coverage, "no-recruitment", "N1") +
        "; those of constant recruitment held K in " + held("constant-recruitment", "K") + " and q in " +
        held("constant-recruitment", "Q") + " at " + Position(coverage, "constant-recruitment", "K");
    EXPECT_TRUE(Has(page, expected)) << expected;
}

TEST(CoverageOfLimits, TheManualPageHasALineForEveryModel)
{
    const Coverage coverage;
    const std::string page = Document("velt-batch.1");
    std::string table = "                          ls     log   gamma\n";
    for (const std::string model : {"no-recruitment", "recruitment-index", "constant-recruitment", "fox",
                                    "schaefer", "pella-tomlinson"}) {
        table += model + std::string(20 - model.size(), ' ');
        for (const std::string error : {"ls", "log", "gamma"})
            table += RightAligned(coverage.Range(model, error, "-"), 8);
        table += "\n";
    }
    EXPECT_TRUE(Has(page, ".nf\n" + WithPlainHyphens(table) + ".fi\n")) << table;
}

TEST(CoverageOfLimits, TheManualPageNamesTheWiderLevelsAndTheShiftedCatchability)
{
    const Coverage coverage;
    const std::string page = Document("velt-batch.1");
    EXPECT_TRUE(Has(page, "In " + coverage.Cell("fox", "ls", "K", "data sets") + " simulated data sets"));
    const std::string wide = "held it in " + coverage.Range("", "ls, 95 %", " to ") + " %";
    EXPECT_TRUE(Has(page, wide)) << wide;
    const std::string shifted =
        "The " + std::to_string(coverage.Held("constant-recruitment", "gamma", "Q")) + " is that of q";
    EXPECT_TRUE(Has(page, shifted)) << shifted;
}
