// SPDX-License-Identifier: GPL-3.0-or-later
// The directories of results: what stands in them after a run, and what they must not take the place of.
#include "batch/BatchJob.h"
#include "batch/ResultNames.h"
#include "batch/WritePlots.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace
{
namespace fs = std::filesystem;

BatchJob Schaefer(const std::vector<std::string>& more,
                  const std::string& file = Sample("expected/schaefer30.txt"))
{
    return RunJob(SchaeferWords(more, file));
}

std::vector<std::string> NamesIn(const std::string& directory)
{
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(directory))
        names.push_back(entry.path().filename().string());
    std::sort(names.begin(), names.end());
    return names;
}

/// Works in a directory as long as it lives.
class WorkingIn
{
public:
    explicit WorkingIn(const std::string& directory) { fs::current_path(directory); }
    ~WorkingIn() { fs::current_path(m_before); }
    WorkingIn(const WorkingIn&) = delete;
    WorkingIn& operator=(const WorkingIn&) = delete;

private:
    fs::path m_before = fs::current_path();
};

using Names = std::vector<std::string>;
const Names kFit{"estimates.csv", "series.csv"};
} // namespace

// Replicates of an earlier run used to stand beside the estimates of the next as if they were its own.
TEST(Results, TablesOfAnOlderRunDoNotRemainBesideTheNewOnes)
{
    const ScratchDirectory directory;
    const std::string out = directory.Path("out");
    ASSERT_EQ(Schaefer({"--csv", out, "--bootstraps", "5", "--seed", "1", "--contours", "3"}).status, 0);
    EXPECT_EQ(NamesIn(out), (Names{"contour_path.csv", "contours.csv", "estimates.csv", "intervals.csv",
                                   "replicates.csv", "series.csv"}));
    directory.File("out/notes.txt", "mine");

    ASSERT_EQ(Schaefer({"--csv", out}).status, 0);

    EXPECT_EQ(NamesIn(out), (Names{"estimates.csv", "notes.txt", "series.csv"}));
    EXPECT_EQ(directory.Read("out/notes.txt"), "mine");
    EXPECT_EQ(NamesIn(directory.Path()), Names{"out"});
}

TEST(Results, PicturesOfAnOlderRunGoAndAPhotographStays)
{
    if (!CanDraw())
        GTEST_SKIP() << "built without the desktop";
    const ScratchDirectory directory;
    const std::string out = directory.Path("out");
    ASSERT_EQ(Schaefer({"--plots", out, "--bootstraps", "5", "--seed", "1"}).status, 0);
    EXPECT_EQ(NamesIn(out).size(), 12U + 10U); // histograms of five parameters more
    directory.File("out/01-photo.png", "mine");
    directory.File("out/20-map.svg", "<svg>mine</svg>");

    ASSERT_EQ(Schaefer({"--plots", out}).status, 0);

    EXPECT_EQ(NamesIn(out).size(), 12U + 2U);
    EXPECT_EQ(directory.Read("out/01-photo.png"), "mine");
    EXPECT_EQ(directory.Read("out/20-map.svg"), "<svg>mine</svg>");
}

TEST(Results, TablesAndPicturesMayShareADirectoryOrLieInEachOther)
{
    if (!CanDraw())
        GTEST_SKIP() << "built without the desktop";
    for (const auto& [tables, pictures] : {std::pair("out", "out"),
                                           {"out", "out/in"},
                                           {"out/in", "out"},
                                           {"out", "out/../other"},
                                           {"out/", "out/."}}) {
        const ScratchDirectory directory;
        for (int run = 0; run < 2; ++run) // the first makes the directories
            ASSERT_EQ(Schaefer({"--csv", directory.Path(tables), "--plots", directory.Path(pictures)}).status,
                      0)
                << tables << " " << pictures;
        std::size_t files = 0;
        for (const auto& entry : fs::recursive_directory_iterator(directory.Path()))
            files += entry.is_regular_file() ? 1U : 0U;
        EXPECT_EQ(files, 2U + 12U);
        EXPECT_FALSE(directory.Read(std::string(tables) + "/series.csv").empty());
        EXPECT_FALSE(directory.Read(std::string(pictures) + "/01-expected-and-observed-cpue.svg").empty());
    }
}

TEST(Results, TheWorkingDirectoryTakesResultsAndKeepsWhatElseIsThere)
{
    const ScratchDirectory directory;
    directory.File("notes.txt", "mine");
    fs::create_directory(directory.Path("scripts"));
    const WorkingIn here(directory.Path());

    ASSERT_EQ(Schaefer({"--csv", ".", "--bootstraps", "5", "--seed", "1"}).status, 0);
    ASSERT_EQ(Schaefer({"--csv", "."}).status, 0);

    EXPECT_EQ(NamesIn("."), (Names{"estimates.csv", "notes.txt", "scripts", "series.csv"}));
    EXPECT_TRUE(fs::equivalent(".", directory.Path()));
}

// Nobody named the working directory there, so nothing else in it is taken for an older run's.
TEST(Results, ContoursWithoutADirectoryReplaceNothingButContours)
{
    const ScratchDirectory directory;
    const WorkingIn here(directory.Path());
    ASSERT_EQ(Schaefer({"--csv", "."}).status, 0);

    ASSERT_EQ(Schaefer({"--contours", "3"}).status, 0);

    EXPECT_EQ(NamesIn("."), (Names{"contour_path.csv", "contours.csv", "estimates.csv", "series.csv"}));
}

TEST(Results, AFitThatFailsLeavesTheOlderResultsAndMakesNoDirectory)
{
    const ScratchDirectory directory;
    const std::string out = directory.Path("out");
    EXPECT_EQ(Schaefer({"--error", "wls", "--csv", out}).status, 4);
    EXPECT_FALSE(fs::exists(out));

    ASSERT_EQ(Schaefer({"--csv", out}).status, 0);
    const std::string before = directory.Read("out/estimates.csv");
    EXPECT_EQ(Schaefer({"--error", "wls", "--csv", out}).status, 4);
    EXPECT_EQ(directory.Read("out/estimates.csv"), before);
}

TEST(Results, TheDataFileIsNeverReplacedUnderWhateverName)
{
    const ScratchDirectory directory;
    fs::create_directory(directory.Path("out"));
    fs::copy_file(Sample("expected/schaefer30.txt"), directory.Path("out/series.csv"));
    fs::create_symlink("out/series.csv", directory.Path("link.txt"));
    fs::create_hard_link(directory.Path("out/series.csv"), directory.Path("second.txt"));
    fs::create_directory_symlink("out", directory.Path("other"));
    const std::string before = directory.Read("out/series.csv");

    for (const char* file :
         {"out/series.csv", "out/../out/./series.csv", "link.txt", "second.txt", "other/series.csv"})
        for (const char* option : {"--csv", "--plots"})
            for (const char* out : {"out", "other", "out/"}) {
                if (std::string(option) == "--plots" && !CanDraw())
                    continue;
                const BatchJob job = Schaefer({option, directory.Path(out)}, directory.Path(file));
                EXPECT_EQ(job.status, 2) << file;
                EXPECT_NE(job.err.find(std::string(option) + ": the results would replace "),
                          std::string::npos)
                    << job.err;
                EXPECT_NE(job.err.find("/out/series.csv, which is the data file."), std::string::npos)
                    << job.err;
                EXPECT_TRUE(job.out.empty());
            }
    EXPECT_EQ(directory.Read("out/series.csv"), before);
    EXPECT_EQ(NamesIn(directory.Path("out")), Names{"series.csv"});
}

TEST(Results, ADataFileBesideTheResultsIsNoMatter)
{
    const ScratchDirectory directory;
    fs::copy_file(Sample("expected/schaefer30.txt"), directory.Path("stock.txt"));
    const std::string before = directory.Read("stock.txt");

    EXPECT_EQ(Schaefer({"--csv", directory.Path()}, directory.Path("stock.txt")).status, 0);

    EXPECT_EQ(NamesIn(directory.Path()), (Names{"estimates.csv", "series.csv", "stock.txt"}));
    EXPECT_EQ(directory.Read("stock.txt"), before);
}

TEST(Results, ADirectoryWhereAFileShouldComeIsRefusedBeforeAnyFit)
{
    const ScratchDirectory directory;
    fs::create_directories(directory.Path("out/replicates.csv"));
    const BatchJob job =
        Schaefer({"--csv", directory.Path("out"), "--bootstraps", "5", "--seed", "1"}, "/nowhere");

    EXPECT_EQ(job.status, 2); // and not 3: the data were not looked at
    EXPECT_NE(job.err.find("out/replicates.csv cannot be written: Is a directory."), std::string::npos)
        << job.err;
    EXPECT_EQ(Schaefer({"--csv", directory.Path("out")}).status, 0); // which writes none of that name
}

TEST(Results, ANameThatIsTooLongIsRefusedBeforeAnyFitAndQuotedShort)
{
    const ScratchDirectory directory;
    const BatchJob job = Schaefer({"--csv", directory.Path(std::string(5000, 'n'))}, "/nowhere");

    EXPECT_EQ(job.status, 2);
    EXPECT_NE(job.err.find("... cannot be written: File name too long."), std::string::npos) << job.err;
    EXPECT_LT(job.err.size(), 400U);
}

TEST(Results, OnlyNamesThatTheProgramGivesAreItsOwn)
{
    const ResultNames all = AllResults();
    for (const char* name : {"series.csv", "estimates.csv", "intervals.csv", "replicates.csv", "contours.csv",
                             "contour_path.csv", "01-catch.png", "12-n1-0-025-0-975.svg", "100-k.png"})
        EXPECT_TRUE(all.byName(name)) << name;
    for (const char* name : {"Series.csv", "series.csv.bak", "1-catch.png", "01-Catch.png", "01catch.png",
                             "01-a b.png", "01-catch.jpg", "01-catcH.png", "01-catch_.svg", "01", ".png",
                             "01.png", "notes.txt", "", "2019.png"})
        EXPECT_FALSE(all.byName(name)) << name;
}

// File names are foreign text too: a message must not carry them to the terminal as they are.
TEST(Results, AMessageShowsForeignTextWithoutItsControlCharacters)
{
    const BatchJob file = Schaefer({}, "/nowhere/\x1B[2J\xFF.txt");
    EXPECT_EQ(file.status, 3);
    EXPECT_NE(file.err.find("/nowhere/\\x1b[2J\\xff.txt"), std::string::npos) << file.err;

    const BatchJob heading = RunJob({"fit", "--data", Sample("expected/schaefer30.txt"), "--time-column",
                                     "\x1B[2J\n", "--columns", "Effort=Effort", "--model", "schaefer"});
    EXPECT_EQ(heading.status, 2);
    EXPECT_NE(heading.err.find("no column \"\\x1b[2J\\n\"; it has"), std::string::npos) << heading.err;

    const BatchJob title =
        RunJob({"fit", "--data", Sample("expected/schaefer30.txt"), "--time-column", "Year", "--columns",
                "Effort=" + std::string(100000, 'x'), "--model", "schaefer"});
    EXPECT_EQ(title.status, 2);
    EXPECT_NE(title.err.find("no column \"" + std::string(300, 'x') + "...\" to fill"), std::string::npos);
}
