// SPDX-License-Identifier: GPL-3.0-or-later
// What used to go wrong when velt-batch was given something odd: tables, disks, searches that cannot end.
#include "batch/BatchJob.h"
#include "batch/BatchWindow.h"
#include "batch/RunBatch.h"
#include "support/NoHandlesLeft.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <fstream>
#include <ostream>
#include <sstream>
#include <streambuf>
#include <system_error>
#include <utility>

namespace
{
const std::vector<std::string> kBass{"fit",
                                     "--data",
                                     std::string(VELT_TEST_SAMPLES) + "/../../samples/smallmouth_bass.txt",
                                     "--time-column",
                                     "Period",
                                     "--columns",
                                     "Tot_Catch_Nums=Tot. Catch Nums,Effort_=Effort",
                                     "--model",
                                     "no-recruitment",
                                     "--m",
                                     "0"};

std::vector<std::string> Bass(const std::vector<std::string>& more)
{
    std::vector<std::string> words = kBass;
    words.insert(words.end(), more.begin(), more.end());
    return words;
}

/// A depletion fit of a comma-separated table with the headings Week, Fish and Lines.
BatchJob Depletion(const std::string& csv, std::vector<std::string> more = {})
{
    const ScratchDirectory directory;
    std::vector<std::string> words{
        "fit",           "--csv-data", directory.File("t.csv", csv),        "--time-column",
        "Week",          "--columns",  "Fish=Tot. Catch Nums,Lines=Effort", "--model",
        "no-recruitment"};
    words.insert(words.end(), more.begin(), more.end());
    return RunJob(std::move(words));
}

/// The same of a text file.
BatchJob TextJob(const std::string& text)
{
    const ScratchDirectory directory;
    return RunJob({"fit", "--data", directory.File("t.txt", text), "--time-column", "Week", "--columns",
                   "Fish=Tot. Catch Nums,Lines=Effort", "--model", "no-recruitment"});
}

/// A closed output or a full disk: nothing that is written arrives.
class BrokenBuffer : public std::streambuf
{
    int_type overflow(int_type /*c*/) override { return traits_type::eof(); }
    int sync() override { return -1; }
};

std::vector<std::string> FilesIn(const std::string& directory)
{
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(directory))
        names.push_back(entry.path().filename().string());
    return names;
}
} // namespace

TEST(BadInput, AFullTableUsedToEndWithABareSubscriptAndNowSaysHowManyPeriodsCanBeFitted)
{
    std::string csv = "Week,Fish,Lines\n";
    for (int week = 1; week <= 200; ++week)
        csv += std::to_string(week) + "," + std::to_string(10000 - 40 * week) + ",1\n";
    const BatchJob job = Depletion(csv);

    EXPECT_EQ(job.status, 4);
    EXPECT_EQ(job.err.rfind("velt-batch: Subscript out of range", 0), 0U) << job.err;
    EXPECT_NE(job.err.find("\n\nThe table has 200 periods and at most 199 can be fitted"), std::string::npos)
        << job.err;
}

TEST(BadInput, ALagBeyondTheTableUsedToEndWithABareSubscript)
{
    const BatchJob job = RunJob({"fit", "--data", Sample("expected/schaefer30.txt"), "--time-column", "Year",
                                 "--columns", "Effort=Effort,Catch=Catch Wt,Total=Tot. Catch Wt", "--model",
                                 "schaefer", "--error", "log", "--lag", "31"});

    EXPECT_EQ(job.status, 4);
    EXPECT_NE(job.err.find("(clsMethManager_FitNewModel)\n\nThe time lag is longer than the 30 periods"),
              std::string::npos)
        << job.err;
}

TEST(BadInput, AFailureOfArithmeticUsedToLeaveTheUserWithItsNameAlone)
{
    const BatchJob job = RunJob({"fit", "--data", Sample("expected/schaefer30.txt"), "--time-column", "Year",
                                 "--columns", "Effort=Effort,Catch=Catch Wt,Total=Tot. Catch Wt", "--model",
                                 "fox", "--init-proportion", "0"});

    EXPECT_EQ(job.status, 4);
    EXPECT_EQ(job.err.rfind("velt-batch: Invalid procedure call or argument", 0), 0U) << job.err;
    EXPECT_NE(job.err.find("\n\nIt was the logarithm or a power of a number that has none. The initial "
                           "proportion must be above 0."),
              std::string::npos)
        << job.err;
}

// Expected catches of an unbounded stock: the replicates' catches have no bound either.
TEST(BadInput, AFailedBootstrapUsedNotToSayThatItWasTheBootstrap)
{
    const BatchJob job =
        RunJob({"fit", "--data", Sample("expected/const25.txt"), "--time-column", "Year", "--columns",
                "Effort=Effort,Catch=Catch Nums,Total=Tot. Catch Nums", "--model", "no-recruitment",
                "--error", "gamma", "--m", "0.3", "--bootstraps", "5", "--seed", "1"});

    EXPECT_EQ(job.status, 4);
    EXPECT_EQ(job.err.rfind("velt-batch: --bootstraps: Overflow", 0), 0U) << job.err;
    EXPECT_NE(job.err.find("an estimate without a bound"), std::string::npos) << job.err;
}

TEST(BadInput, OfTwoColumnsWithOneHeadingTheFirstUsedToBeTakenSilently)
{
    const BatchJob csv = Depletion("Week,Fish,Fish,Lines\n1,100,1,1\n2,90,1,1\n3,80,1,1\n");
    EXPECT_EQ(csv.status, 2);
    EXPECT_NE(csv.err.find("the column \"Fish\" more than once"), std::string::npos) << csv.err;

    const ScratchDirectory directory;
    const BatchJob text =
        RunJob({"fit", "--data", directory.File("t.txt", "Lake\nWeek Fish Fish Lines\n1 100 1 1\n2 90 1 1\n"),
                "--time-column", "Week", "--columns", "Fish=Tot. Catch Nums,Lines=Effort", "--model",
                "no-recruitment"});
    EXPECT_EQ(text.status, 2);
    EXPECT_NE(text.err.find("the column \"Fish\" more than once"), std::string::npos) << text.err;
}

TEST(BadInput, ATwiceNamedColumnThatNobodyAsksForIsNoMatter)
{
    EXPECT_EQ(Depletion("Week,Note,Note,Fish,Lines\n1,,,100,1\n2,,,90,1\n3,,,80,1\n", {"--m", "0"}).status,
              0);
}

TEST(BadInput, ACsvFileThatIsTooLargeUsedToBeRefusedWithoutTheReason)
{
    const BatchJob job = Depletion("Week,Fish,Lines\n1," + std::string(2U << 20U, '9') + ",1\n");

    EXPECT_EQ(job.status, 3);
    EXPECT_NE(job.err.find("bytes; at most 1048576"), std::string::npos) << job.err;
}

// A year without a row used to shift every later value into the year before it, without a word.
TEST(BadInput, TimeLabelsThatDoNotRiseByOneAreRefusedWithTheirLine)
{
    const BatchJob csv = Depletion("Week,Fish,Lines\n1,100,1\n2,90,1\n4,80,1\n5,70,1\n");
    EXPECT_EQ(csv.status, 3);
    EXPECT_NE(
        csv.err.find("t.csv: The time labels do not rise by one from row to row: in line 4, 4 follows 2."),
        std::string::npos)
        << csv.err;

    const BatchJob text = TextJob("Lake\nWeek Fish Lines\n1 100 1\n2 90 1\n2 80 1\n");
    EXPECT_EQ(text.status, 3);
    EXPECT_NE(text.err.find("in line 5, 2 follows 2."), std::string::npos) << text.err;
    EXPECT_TRUE(text.out.empty());
}

TEST(BadInput, TheLineNamedIsThatOfTheFileAlsoBehindCellsOfSeveralLines)
{
    for (const std::string end : {"\n", "\r\n", "\r"}) {
        const std::string head =
            "Week,Fish,Lines,\"a" + end + "note\"" + end + "1,100,1,\"x" + end + "y\"" + end;
        const BatchJob cell = Depletion(head + "2,ninety,1," + end);
        EXPECT_EQ(cell.status, 3);
        EXPECT_NE(cell.err.find("Line 5, column \"Fish\": \"ninety\" is not a number."), std::string::npos)
            << cell.err;
        EXPECT_NE(Depletion(head + "3,90,1," + end).err.find("in line 5, 3 follows 1."), std::string::npos);
        EXPECT_NE(Depletion(head + "2,1e39,1," + end).err.find("(line 5: a value is too large"),
                  std::string::npos);
        EXPECT_NE(Depletion(head + "40000,90,1," + end).err.find("40000 in line 5 is no whole number"),
                  std::string::npos);
    }
}

TEST(BadInput, LabelsThatEndBeforeTheyBeginAreRefusedWithTheirLines)
{
    const BatchJob job = Depletion("Week,Fish,Lines\n3,100,1\n2,90,1\n1,80,1\n");
    EXPECT_EQ(job.status, 3);
    EXPECT_NE(job.err.find("The last time label, 1 in line 4, is below the first, 3 in line 2."),
              std::string::npos)
        << job.err;
}

TEST(BadInput, FilesWithoutRowsOrHeadingsWithTooManyColumnsOrZeroBytesAreRefusedWithTheirLine)
{
    using namespace std::string_literals;
    std::string wide;
    for (int column = 0; column < 257; ++column)
        wide += "h" + std::to_string(column) + " ";
    const std::vector<std::pair<std::string, std::string>> texts{
        {"Lake\nWeek Fish Lines\n", "(line 3: there is no row of values)"},
        {"Lake\n \n1 2 3\n", "(line 2: 0 headings, 1 to 256 are possible)"},
        {"Lake\n", "(line 2: the file ends before it)"},
        {"", "(line 1: the file ends before it)"},
        {"Lake\n" + wide + "\n1\n", "(line 2: 257 headings, 1 to 256 are possible)"},
        {"Lake\nWeek Fish Lines\n1 2 \0\n"s, "(line 3: a zero byte, this is not plain text)"},
    };
    for (const auto& [text, sentence] : texts) {
        const BatchJob job = TextJob(text);
        EXPECT_EQ(job.status, 3) << text;
        EXPECT_NE(job.err.find(sentence), std::string::npos) << job.err;
    }
    std::replace(wide.begin(), wide.end(), ' ', ',');
    const std::vector<std::pair<std::string, std::string>> tables{
        {"Week,Fish,Lines\n", "Line 2: the table has no rows of values."},
        {"\n1,2,3\n", "Line 1: there are no headings."},
        {"", "Line 1: there are no headings."},
        {wide + "\n", "Line 1: 258 headings; at most 256 columns can be read."}, // one behind the last comma
        {"Week,Fish,Lines\n1,2,\0\n"s, "Line 2: a zero byte"},
    };
    for (const auto& [table, sentence] : tables) {
        const BatchJob job = Depletion(table);
        EXPECT_EQ(job.status, 3) << table;
        EXPECT_NE(job.err.find(sentence), std::string::npos) << job.err;
    }
}

TEST(BadInput, ATextFileAboveAMegabyteIsRefusedUnread)
{
    const BatchJob job = TextJob("Lake\n" + std::string(1U << 20U, 'x'));
    EXPECT_EQ(job.status, 3);
    EXPECT_NE(job.err.find("(the file has 1048581 bytes; at most 1048576 can be imported)"),
              std::string::npos)
        << job.err;
}

// The import used to read a copy of the table in the system's directory for such, and failed without one.
TEST(BadInput, ATableNeedsNoScratchDirectory)
{
    const char* const former = std::getenv("TMPDIR");
    const std::string kept = former != nullptr ? former : "";
    const ScratchDirectory directory;
    const std::string table = directory.File("t.csv", "Week,Fish,Lines\n1,100,1\n2,90,1\n3,80,1\n");
    setenv("TMPDIR", "/proc", 1); // there, and nobody can make a file in it
    const BatchJob job =
        RunJob({"fit", "--csv-data", table, "--time-column", "Week", "--columns",
                "Fish=Tot. Catch Nums,Lines=Effort", "--model", "no-recruitment", "--m", "0"});
    former != nullptr ? setenv("TMPDIR", kept.c_str(), 1) : unsetenv("TMPDIR");
    EXPECT_EQ(job.status, 0) << job.err;
}

// A failure that the file errors do not list used to end in an empty sentence.
TEST(BadInput, ALoopOfLinksAndAProgramWithoutHandlesHaveASentence)
{
    const std::string unidentified =
        ": Default Error Message: An internal unidentified error has occured.\n(";
    const ScratchDirectory directory;
    const std::string loop = directory.Path("loop.txt");
    std::filesystem::create_symlink(loop, loop);
    const std::string table = directory.File("t.txt", "Lake\nWeek Fish Lines\n1 100 1\n");
    for (const char* option : {"--data", "--csv-data"}) {
        const auto words = [&](const std::string& file) {
            return std::vector<std::string>{"fit",
                                            option,
                                            file,
                                            "--time-column",
                                            "Week",
                                            "--columns",
                                            "Fish=Tot. Catch Nums,Lines=Effort",
                                            "--model",
                                            "no-recruitment"};
        };
        const BatchJob links = RunJob(words(loop));
        EXPECT_EQ(links.status, 3);
        EXPECT_EQ(links.err,
                  "velt-batch: " + loop + unidentified + std::system_category().message(ELOOP) + ")\n");

        const NoHandlesLeft none;
        const BatchJob handles = RunJob(words(table));
        EXPECT_EQ(handles.status, 3);
        EXPECT_EQ(handles.err,
                  "velt-batch: " + table + unidentified + std::system_category().message(EMFILE) + ")\n");
    }
}

TEST(BadInput, ForeignTextInAMessageIsShortAndSpeaksToNoTerminal)
{
    const std::string bell = "\x1b[31m\xff";
    const BatchJob cell = Depletion("Week,Fish,Lines\n1," + bell + std::string(5000, 'x') + ",1\n");
    EXPECT_EQ(cell.status, 3);
    EXPECT_NE(cell.err.find("\"\\x1b[31m\\xff"), std::string::npos) << cell.err;
    EXPECT_LT(cell.err.size(), 600U);

    std::string many = bell;
    for (int column = 0; column < 200; ++column)
        many += ",heading" + std::to_string(column);
    const BatchJob headings = Depletion(many + "\n1\n");
    EXPECT_EQ(headings.status, 2);
    EXPECT_NE(headings.err.find("it has \"\\x1b[31m\\xff\", \"heading0\""), std::string::npos)
        << headings.err;
    EXPECT_LT(headings.err.size(), 600U);
    EXPECT_EQ(headings.err.find('\x1b'), std::string::npos);
}

TEST(BadInput, ResultsThatCannotBeWrittenUsedToCountAsDone)
{
    BrokenBuffer buffer;
    std::ostringstream err;
    for (const auto& words :
         {Bass({}), Bass({"--format", "json"}), std::vector<std::string>{"fit", "--help"}}) {
        std::ostream broken(&buffer);
        EXPECT_EQ(RunBatch(words, broken, err), 2);
    }
    EXPECT_NE(err.str().find("cannot be written to standard output"), std::string::npos);
}

TEST(BadInput, ATableWhosePlaceIsTakenByADirectoryLeavesNothingUnfinished)
{
    const ScratchDirectory directory;
    std::filesystem::create_directory(directory.Path("series.csv"));
    const BatchJob job = RunJob(Bass({"--csv", directory.Path()}));

    EXPECT_EQ(job.status, 2);
    EXPECT_TRUE(job.out.empty());
    EXPECT_NE(job.err.find("series.csv cannot be written"), std::string::npos) << job.err;
    for (const std::string& name : FilesIn(directory.Path()))
        EXPECT_FALSE(name.starts_with(".unfinished")) << name;
}

// From its minimum the fit needs two halvings of its first step, ln(4/3), to meet a parameter test of 0.1; a
// replicate, which begins with ln 3, four, one more than it is given. Each that does not arrive is drawn
// again without limit.
TEST(BadInput, ReplicatesThatNeverConvergeUsedToKeepTheJobForEver)
{
    const BatchJob job = RunJob(
        Bass({"--error", "log", "--start", "N1=1175.472", "--max-its", "3", "--ftol", "1e-9", "--xtol", "0.1",
              "--converge-on", "either", "--bootstraps", "10", "--seed", "1", "--format", "json"}));

    EXPECT_EQ(job.status, 4);
    EXPECT_EQ(job.Json()["Excuse"], 3);
    EXPECT_NE(job.err.find("--bootstraps: 500 refits in a row failed to converge"), std::string::npos)
        << job.err;
    EXPECT_NE(job.err.find("Raise --max-its"), std::string::npos) << job.err;
}

TEST(BatchMeter, GivesUpOnlyWhenTheValueHasNotRisenForFiveHundredLooks)
{
    BatchMeter meter;
    meter.Start("Calculating Bootstraps...", 1000);
    for (int value = 1; value <= 1000; ++value) {
        EXPECT_FALSE(meter.Cancelled());
        meter.Value(value);
    }
    for (int look = 1; look <= 500; ++look) {
        EXPECT_FALSE(meter.Cancelled()) << look;
        meter.Value(1000); // the same replicate once more
    }
    EXPECT_TRUE(meter.Cancelled());
    EXPECT_TRUE(meter.GaveUp());
    EXPECT_EQ(meter.Furthest(), 1000);

    meter.Start("Sorting Bootstraps...", 3);
    EXPECT_FALSE(meter.GaveUp());
}

TEST(BadInput, ALongNameOfTheDataFileIsCutInTheMessage)
{
    for (const char* option : {"--data", "--csv-data"}) {
        const BatchJob job = RunJob(SchaeferWords({}, std::string(3000, 'x') + ".txt", option));
        EXPECT_EQ(job.status, 3) << option;
        EXPECT_TRUE(job.err.starts_with("velt-batch: " + std::string(300, 'x') + "...: ")) << job.err;
        EXPECT_LT(job.err.size(), 600U) << option;
    }
}
