// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/Utilities.h"

#include "base/VeltError.h"
#include "support/ScriptedUser.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>
#include <fstream>
#include <functional>

namespace
{
/// A folder of one test that is gone afterwards.
class UtilitiesFiles : public testing::Test
{
protected:
    UtilitiesFiles()
        : m_folder(std::filesystem::path(testing::TempDir()) /
                   (std::string("velt_") + testing::UnitTest::GetInstance()->current_test_info()->name()))
    {
        std::filesystem::create_directories(m_folder);
    }
    ~UtilitiesFiles() override { std::filesystem::remove_all(m_folder); }

    std::string Path(const std::string& name) const { return (m_folder / name).string(); }
    std::string Write(const std::string& name, const std::string& bytes) const
    {
        std::ofstream(Path(name), std::ios::binary) << bytes;
        return Path(name);
    }
    /// A file that begins as a project of version `version` does.
    std::string WriteProject(const std::string& name, char version) const
    {
        using namespace std::string_literals;
        return Write(name, "\x00\x04\x00\x08\x06\x09ORVO"s + version + "......"s);
    }

    ScriptedUser user;
    ErrorReporter reporter{user};

private:
    std::filesystem::path m_folder;
};

VeltError ErrorOf(const std::function<void()>& action)
{
    try {
        action();
    } catch (const VeltError& error) {
        return error;
    }
    return {0, "nothing raised", ""};
}
} // namespace

TEST_F(UtilitiesFiles, MagicVersionAndExtensionTogetherMakeTheType)
{
    EXPECT_EQ(GetFileType(WriteProject("a.qx4", 1)), FileType::Qx4);
    EXPECT_EQ(GetFileType(WriteProject("a.Vl2", 2)), FileType::Velt2);
    EXPECT_EQ(GetFileType(WriteProject("a.vl3", 3)), FileType::Velt3);
    EXPECT_EQ(GetFileType(WriteProject("a.QX5", 4)), FileType::Qx5);
    EXPECT_EQ(GetFileType(WriteProject("b.vl3", 0)), FileType::NotRecognised);
    EXPECT_EQ(GetFileType(WriteProject("c.vl3", 5)), FileType::NotRecognised);
    EXPECT_EQ(GetFileType(WriteProject("d.vl3", '\xFF')), FileType::NotRecognised);
}

TEST_F(UtilitiesFiles, AFileWithMagicAndVersionByte3ButNamedVl2IsNotRecognised)
{
    EXPECT_EQ(GetFileType(WriteProject("a.VL2", 3)), FileType::NotRecognised);
}

TEST_F(UtilitiesFiles, ANameEndingInTxtInAnyCaseIsTextAlsoWhenTheFileDoesNotExist)
{
    EXPECT_EQ(GetFileType(Path("nowhere.TxT")), FileType::Text);
    EXPECT_FALSE(std::filesystem::exists(Path("nowhere.TxT"))); // looking never creates
    EXPECT_EQ(GetFileType(WriteProject("project.txt", 3)), FileType::Text);
}

TEST_F(UtilitiesFiles, AShortOrMissingFileHasNoType)
{
    using namespace std::string_literals;
    const std::string head = "\x00\x04\x00\x08\x06\x09ORVO\x03"s;
    for (std::size_t size = 0; size < head.size(); ++size)
        EXPECT_EQ(GetFileType(Write("short.vl3", head.substr(0, size))), FileType::NotRecognised) << size;
    EXPECT_EQ(GetFileType(Write("eleven.vl3", head)), FileType::Velt3);
    EXPECT_EQ(GetFileType(Path("missing.vl3")), FileType::NotRecognised);
    EXPECT_FALSE(std::filesystem::exists(Path("missing.vl3")));
    EXPECT_EQ(GetFileType(""), FileType::NotRecognised);
}

TEST_F(UtilitiesFiles, EveryByteOfTheMagicCounts)
{
    using namespace std::string_literals;
    const std::string head = "\x00\x04\x00\x08\x06\x09ORVO\x03"s;
    for (std::size_t at = 0; at < kProjectMagic.size(); ++at) {
        std::string changed = head;
        changed[at] = static_cast<char>(changed[at] ^ 0x20);
        EXPECT_EQ(GetFileType(Write("changed.vl3", changed)), FileType::NotRecognised) << at;
    }
}

TEST_F(UtilitiesFiles, WritingOverAFileAsksFirst)
{
    const std::string path = Write("old.vl3", "x");
    user.answers = {Answer::Cancel, Answer::Ok};

    EXPECT_FALSE(CheckFileAccess(path, FileAccess::Write, reporter));
    EXPECT_TRUE(CheckFileAccess(path, FileAccess::Write, reporter));

    ASSERT_EQ(user.messages.size(), 2U);
    EXPECT_EQ(user.messages[0].title, "File Message");
    EXPECT_EQ(user.messages[0].buttons, Buttons::OkCancel);
    // Deliberate: no blank between the path and "already".
    EXPECT_EQ(user.messages[0].text,
              "The file " + path +
                  "already exists on \ndisk. Saving to that file will overwrite the file's current contents "
                  "\n\nChoose OK to replace file, Cancel to stop.");
}

TEST_F(UtilitiesFiles, ReadingAMissingFileIsToldAndRefused)
{
    const std::string path = Path("none.vl3");

    EXPECT_FALSE(CheckFileAccess(path, FileAccess::Read, reporter));

    ASSERT_EQ(user.messages.size(), 1U);
    EXPECT_EQ(user.messages[0].text, "The file " + path + " doesn't exist.\nPlease select another file. ");
    EXPECT_EQ(user.messages[0].title, "File Message");
}

TEST_F(UtilitiesFiles, EverythingElseIsAllowedWithoutABox)
{
    const std::string there = Write("there.vl3", "x");
    EXPECT_TRUE(CheckFileAccess(there, FileAccess::Read, reporter));
    EXPECT_TRUE(CheckFileAccess(Path("new.vl3"), FileAccess::Write, reporter));
    EXPECT_TRUE(CheckFileAccess(Path("new.vl3"), FileAccess::Other4, reporter));
    EXPECT_TRUE(CheckFileAccess(Path("new.vl3"), FileAccess::Other5, reporter));
    EXPECT_TRUE(user.messages.empty());
}

#ifndef _WIN32
TEST(Utilities, AFullPathIsTakenApart)
{
    EXPECT_EQ(GetFullPath("/data/north/../ling.vl3"), "/data/ling.vl3");
    EXPECT_EQ(GetBaseName("/data/ling.1986.vl3"), "ling.1986");
    EXPECT_EQ(GetFileName("/data/ling.vl3"), "ling.vl3");
    EXPECT_EQ(GetFileExt("/data/ling.vl3"), ".vl3");
    EXPECT_EQ(GetFileExt("/data.d/ling"), "");
    EXPECT_EQ(GetBaseName("/data.d/ling"), "ling");
}
#endif

TEST(Utilities, AnEmptyPathGivesAnEmptyResult)
{
    EXPECT_EQ(GetFullPath(""), "");
    EXPECT_EQ(GetBaseName(""), "");
    EXPECT_EQ(GetFileName(""), "");
    EXPECT_EQ(GetFileExt(""), "");
}

TEST(Utilities, APathThatIsNotAbsoluteRaisesSystemError161)
{
    for (const char* path : {"ling.vl3", "./ling.vl3", "c:ling.vl3"}) {
        const VeltError error = ErrorOf([path] { GetFileName(path); });
        EXPECT_EQ(error.number, 161U + 0x80047148U) << path;
        EXPECT_EQ(error.source, "VELT 3.0.Windows");
        EXPECT_FALSE(error.description.empty());
    }
}

TEST(Utilities, ATextIsPaddedOrCutToItsWidth)
{
    EXPECT_EQ(PadString("ab", 4), "ab  ");
    EXPECT_EQ(PadString("abcd", 4), "abcd");
    EXPECT_EQ(PadString("abcde", 4), "abcd");
    EXPECT_EQ(PadString("", 2), "  ");
    EXPECT_EQ(PadString("abc", 0), "");
}

TEST(Utilities, PaddingCountsCharactersAndNeverCutsOneInTwo)
{
    EXPECT_EQ(PadString("\u00E9t\u00E9", 5), "\u00E9t\u00E9  ");
    EXPECT_EQ(PadString("\u00E9t\u00E9", 1), "\u00E9");
}

TEST(Utilities, TrimmingTakesBlanksFromBothEndsOnly)
{
    EXPECT_EQ(Trim("  a b  "), "a b");
    EXPECT_EQ(Trim("   "), "");
    EXPECT_EQ(Trim(""), "");
    EXPECT_EQ(Trim("\ta"), "\ta");
}

TEST(Utilities, CapitalsAreMadeOfPlainLettersOnly)
{
    EXPECT_EQ(ToUpper("aZ9.vl3"), "AZ9.VL3");
    EXPECT_EQ(ToUpper("\u00E9"), "\u00E9");
}

TEST(Utilities, FourNumbersSeparatedByACommaABlankAndATabGiveFourTokens)
{
    EXPECT_EQ(ParseLine("1,2 3\t4"), (std::vector<std::string>{"1", "2", "3", "4"}));
}

TEST(Utilities, ALineOfOnlySeparatorsYieldsNoTokens)
{
    EXPECT_TRUE(ParseLine(" ,\t, ,").empty());
    EXPECT_TRUE(ParseLine("").empty());
}

TEST(Utilities, AnyRunOfSeparatorsCountsAsOne)
{
    EXPECT_EQ(ParseLine("  , a ,,\t b;c  "), (std::vector<std::string>{"a", "b;c"}));
}

TEST(Utilities, EachFileErrorHasItsTextAndButtons)
{
    const std::vector<std::tuple<std::uint32_t, std::string, Buttons>> table{
        {52, "That file number or name is illegal", Buttons::OkCancel},
        {54, "Can't open your file for that type of access", Buttons::RetryCancel},
        {55, "This file is already open.", Buttons::RetryCancel},
        {57, "Internal disk error.", Buttons::RetryCancel},
        {61, "Disk is full. Continue?", Buttons::YesNoCancel},
        {62,
         "This file has a nonstandard end-of-file marker, or an attempt was made to read beyond the "
         "end-of-file marker.",
         Buttons::RetryCancel},
        {64, "That filename is illegal.", Buttons::OkCancel},
        {68, "That device appears unavailable.", Buttons::RetryCancel},
        {71, "Insert a disk in the drive and make sure door is closed", Buttons::RetryCancel},
        {75, "That path or filename cannot be accessed.", Buttons::RetryCancel},
        {76, "That path doesn't exist.", Buttons::RetryCancel},
    };
    for (const auto& [number, text, buttons] : table) {
        ScriptedUser user;
        ErrorReporter reporter(user);
        user.answers = {Answer::Cancel};
        EXPECT_EQ(FileErrors(number, reporter), FileErrorDecision::GiveUp) << number;
        ASSERT_EQ(user.messages.size(), 1U);
        EXPECT_EQ(user.messages[0].text, text);
        EXPECT_EQ(user.messages[0].buttons, buttons) << number;
        EXPECT_EQ(user.messages[0].icon, Icon::Exclamation);
        EXPECT_EQ(user.messages[0].title, "File Error");
    }
}

TEST(Utilities, DiskIsFullAnsweredYesOrNoRetriesTheWrite)
{
    ScriptedUser user;
    ErrorReporter reporter(user);
    user.answers = {Answer::Yes, Answer::No, Answer::Cancel};
    EXPECT_EQ(FileErrors(61, reporter), FileErrorDecision::Retry);
    EXPECT_EQ(FileErrors(61, reporter), FileErrorDecision::Retry); // deliberate: No has no meaning of its own
    EXPECT_EQ(FileErrors(61, reporter), FileErrorDecision::GiveUp);
}

TEST(Utilities, OkAndRetryTryAgain)
{
    ScriptedUser user;
    ErrorReporter reporter(user);
    user.answers = {Answer::Ok, Answer::Retry};
    EXPECT_EQ(FileErrors(64, reporter), FileErrorDecision::Retry);
    EXPECT_EQ(FileErrors(76, reporter, "/data/none.txt"), FileErrorDecision::Retry);
    EXPECT_EQ(user.messages[1].text, "That path doesn't exist.\n/data/none.txt");
}

TEST(Utilities, AnUnknownFileErrorShowsTheDefaultMessageAndGivesUp)
{
    for (const std::uint32_t number : {0U, 9U, 53U, 77U}) {
        ScriptedUser user;
        ErrorReporter reporter(user);
        EXPECT_EQ(FileErrors(number, reporter), FileErrorDecision::Unknown) << number;
        EXPECT_EQ(user.messages.at(0).text,
                  "Default Error Message: An internal unidentified error has occured.");
        EXPECT_EQ(user.messages.at(0).buttons, Buttons::Ok);
    }
}

TEST(Utilities, TheSystemsCodesBecomeFileErrors)
{
    EXPECT_EQ(FileErrorOf(ENOENT), 76U);
    EXPECT_EQ(FileErrorOf(EACCES), 75U);
    EXPECT_EQ(FileErrorOf(EISDIR), 75U);
    EXPECT_EQ(FileErrorOf(ENOSPC), 61U);
    EXPECT_EQ(FileErrorOf(ENXIO), 68U);
    EXPECT_EQ(FileErrorOf(EIO), 57U);
    EXPECT_EQ(FileErrorOf(EINVAL), 0U);
}

TEST(Utilities, ASystemFailureCarriesTheSystemsOwnWords)
{
    const VeltError error = ErrorOf([] { RaiseIfFailed(ENOENT); });
    EXPECT_EQ(error.number, 0x80047148U + static_cast<std::uint32_t>(ENOENT));
    EXPECT_EQ(error.description, std::system_category().message(ENOENT));
    EXPECT_EQ(error.source, "VELT 3.0.Windows");
    EXPECT_NO_THROW(RaiseIfFailed(0));
}

TEST(Utilities, ANumberBelow1001IsRaisedBare)
{
    const VeltError error = ErrorOf([] { RaiseError(1000); });
    EXPECT_EQ(error.number, 1000U);
    EXPECT_EQ(error.description, "");
    EXPECT_EQ(error.source, "VELT 3.0.VBError");
}

TEST(Utilities, ANumberFrom1001TakesItsWordsFromTheStringTable)
{
    const VeltError error = ErrorOf([] { RaiseError(1898); });
    EXPECT_EQ(error.number, 1898U);
    EXPECT_EQ(error.description, "M.S.Y.");
    EXPECT_EQ(error.source, "VELT 3.0.N1"); // text 1890

    EXPECT_EQ(ErrorOf([] { RaiseError(13001); }).number, 13001U); // also without words
}
