// SPDX-License-Identifier: GPL-3.0-or-later
// A small file must not ask for much memory, whatever stands in it. The memory operators of this program
// count.
#include "batch/BatchJob.h"
#include "core/CountedMemory.h"

#include <gtest/gtest.h>

#include <string>

namespace
{
constexpr std::size_t kMegabyte = std::size_t{1} << 20U; // the largest file that is read
constexpr long kMost = 20L << 20;

/// `head` and then `part` again and again, of the largest size.
std::string Filled(const std::string& head, const std::string& part)
{
    std::string text = head;
    while (text.size() + part.size() <= kMegabyte)
        text += part;
    return text;
}

/// The most bytes that a job held at once above what the program held before it.
long MostBytesFor(const std::string& option, const std::string& text)
{
    const ScratchDirectory directory;
    const std::string file = directory.File("t.txt", text);
    const long before = BytesHeld();
    ForgetPeak();
    const BatchJob job = RunJob({"fit", option, file, "--time-column", "Year", "--columns",
                                 "Catch=Tot. Catch Wt", "--model", "schaefer"});
    EXPECT_GE(job.status, 2) << "no such file is a table that can be fitted";
    EXPECT_LE(job.status, 3);
    return MostBytesHeld() - before;
}
} // namespace

// The rows of a megabyte of line ends used to take 80 of them.
TEST(ImportMemory, AMegabyteOfLineEndsTakesLessThanTwenty)
{
    for (const char* option : {"--data", "--csv-data"}) {
        for (const std::string end : {"\n", "\r", "\r\n"}) {
            const long bytes = MostBytesFor(option, Filled("", end));
            EXPECT_GT(bytes, static_cast<long>(kMegabyte)) << "the file itself was not counted";
            EXPECT_LT(bytes, kMost) << option;
            EXPECT_LT(MostBytesFor(option, Filled("Sea\nYear Catch\n", end)), kMost) << option;
            EXPECT_LT(MostBytesFor(option, Filled("Year,Catch\n", end)), kMost) << option;
        }
    }
}

TEST(ImportMemory, AMegabyteOfWordsOrCellsTakesLessThanTwentyToo)
{
    for (const char* option : {"--data", "--csv-data"}) {
        for (const std::string part : {",", "a,", "a ", "\"\",", "\""}) {
            EXPECT_LT(MostBytesFor(option, Filled("", part)), kMost) << option << " " << part;
            EXPECT_LT(MostBytesFor(option, Filled("Sea\n", part)), kMost) << option << " " << part;
            EXPECT_LT(MostBytesFor(option, Filled("Year,Catch\n", part)), kMost) << option << " " << part;
            EXPECT_LT(MostBytesFor(option, Filled("Sea\nYear Catch\n", part)), kMost)
                << option << " " << part;
        }
    }
}

// Half a million rows of one digit, of two: every number takes eight bytes, and a table that grows is held
// twice.
TEST(ImportMemory, AMegabyteOfTheShortestRowsTakesLessThanTwentyToo)
{
    EXPECT_LT(MostBytesFor("--data", Filled("Sea\nYear Catch\n", "1 2\n")), kMost);
    EXPECT_LT(MostBytesFor("--csv-data", Filled("Year,Catch\n", "1,2\n")), kMost);
    EXPECT_LT(MostBytesFor("--data", Filled("Sea\nYear\n", "1\n")), kMost);
    EXPECT_LT(MostBytesFor("--csv-data", Filled("Year\n", "1\n")), kMost);
}
