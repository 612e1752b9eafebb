// SPDX-License-Identifier: GPL-3.0-or-later
#include "fit/ExportToASCIIFile.h"

#include "data/clsVeltData.h"
#include "support/ScriptedUser.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <system_error>

namespace
{
/// A person who exports a small table into a folder of the test's own, where an older export stands.
class ExportToASCIIFileAtTheDesk : public testing::Test
{
protected:
    ExportToASCIIFileAtTheDesk()
        : m_folder(
              std::filesystem::path(testing::TempDir()) /
              (std::string("velt_export_") + testing::UnitTest::GetInstance()->current_test_info()->name()))
    {
        std::filesystem::create_directories(m_folder);
        std::ofstream(Path()) << "old";
        data.DSDesc("Ling");
    }
    ~ExportToASCIIFileAtTheDesk() override { std::filesystem::remove_all(m_folder); }

    std::string Path() const { return (m_folder / "out.txt").string(); }
    std::string Text() const
    {
        std::ifstream file(Path(), std::ios::binary);
        return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    }
    /// Writing fails `times` times with the system's error `code`.
    static FileCalls Failing(int code, int times)
    {
        FileCalls calls = SystemFileCalls();
        calls.write = [code, times](int file, const void* bytes, std::size_t size) mutable -> ssize_t {
            if (times-- <= 0)
                return SystemFileCalls().write(file, bytes, size);
            errno = code;
            return -1;
        };
        return calls;
    }
    /// What the person reads when writing fails with `code` for ever, and the buttons.
    std::pair<std::string, Buttons> BoxOf(int code)
    {
        bench.user.messages.clear();
        bench.user.answers = {Answer::Cancel};
        EXPECT_FALSE(ExportToASCIIFile(data, Path(), Failing(code, 1000)));
        EXPECT_EQ(bench.user.messages.size(), 1U);
        EXPECT_EQ(bench.user.messages.at(0).title, "File Error");
        EXPECT_EQ(bench.user.messages.at(0).icon, Icon::Exclamation);
        EXPECT_EQ(Text(), "old");
        return {bench.user.messages.at(0).text, bench.user.messages.at(0).buttons};
    }
    std::string Reason(int code) const
    {
        return "\n" + std::filesystem::canonical(Path()).string() +
               " cannot be written: " + std::generic_category().message(code) + ".";
    }

    Bench bench;
    clsVeltData data{bench.run};

private:
    std::filesystem::path m_folder;
};
} // namespace

TEST_F(ExportToASCIIFileAtTheDesk, AnExportIsToldWithItsPath)
{
    EXPECT_TRUE(ExportToASCIIFile(data, Path()));
    EXPECT_EQ(Text(), "Ling\r\nTime\t\r\n");
    ASSERT_EQ(bench.user.messages.size(), 1U);
    EXPECT_EQ(bench.user.messages[0].text, "File Exported Successfully to ASCII file " + Path());
    EXPECT_EQ(bench.user.messages[0].title, "VELT 3.0");
    EXPECT_EQ(bench.user.messages[0].icon, Icon::Information);
    EXPECT_EQ(bench.user.messages[0].buttons, Buttons::Ok);
}

TEST_F(ExportToASCIIFileAtTheDesk, DiskIsFullAnsweredYesRetriesTheWrite)
{
    bench.user.answers = {Answer::Yes, Answer::Yes};
    EXPECT_TRUE(ExportToASCIIFile(data, Path(), Failing(ENOSPC, 2)));
    ASSERT_EQ(bench.user.messages.size(), 3U);
    EXPECT_EQ(bench.user.messages[0].text, "Disk is full. Continue?" + Reason(ENOSPC));
    EXPECT_EQ(bench.user.messages[0].buttons, Buttons::YesNoCancel);
    EXPECT_EQ(Text(), "Ling\r\nTime\t\r\n");
}

TEST_F(ExportToASCIIFileAtTheDesk, CancelAbandonsTheExportAndTheOldFileStands)
{
    EXPECT_EQ(BoxOf(ENOSPC), std::pair("Disk is full. Continue?" + Reason(ENOSPC), Buttons::YesNoCancel));
    EXPECT_EQ(BoxOf(EIO), std::pair("Internal disk error." + Reason(EIO), Buttons::RetryCancel));
    EXPECT_EQ(BoxOf(EACCES),
              std::pair("That path or filename cannot be accessed." + Reason(EACCES), Buttons::RetryCancel));
}

TEST_F(ExportToASCIIFileAtTheDesk, AnErrorThatNoFileErrorListsIsToldOnceAndGivesUp)
{
    EXPECT_EQ(BoxOf(EFBIG),
              std::pair("Default Error Message: An internal unidentified error has occured." + Reason(EFBIG),
                        Buttons::Ok));
}

TEST_F(ExportToASCIIFileAtTheDesk, AFolderThatDoesNotExistIsAPathThatDoesNotExist)
{
    bench.user.answers = {Answer::Cancel};
    EXPECT_FALSE(ExportToASCIIFile(data, Path() + "/missing/out.txt"));
    EXPECT_TRUE(bench.user.Saw("That path doesn't exist.\n"));
}

TEST_F(ExportToASCIIFileAtTheDesk, AValueThatIsNoNumberIsRaisedToTheCommandAndTheOldFileStands)
{
    data.TimeInts(1);
    data.AddColumn(columns::Effort);
    data.Effort(1, std::nanf(""));
    EXPECT_THROW(ExportToASCIIFile(data, Path()), VeltError);
    EXPECT_TRUE(bench.user.messages.empty());
    EXPECT_EQ(Text(), "old");
}
