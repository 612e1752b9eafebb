// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/FileType.h"

#include "support/ScriptedUser.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

namespace
{
/// A folder of one test that is gone afterwards.
class FileTypes : public testing::Test
{
protected:
    FileTypes()
        : m_folder(std::filesystem::path(testing::TempDir()) /
                   (std::string("velt_") + testing::UnitTest::GetInstance()->current_test_info()->name()))
    {
        std::filesystem::create_directories(m_folder);
    }
    ~FileTypes() override { std::filesystem::remove_all(m_folder); }

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
} // namespace

TEST_F(FileTypes, MagicVersionAndExtensionTogetherMakeTheType)
{
    EXPECT_EQ(GetFileType(WriteProject("a.qx4", 1)), FileType::Qx4);
    EXPECT_EQ(GetFileType(WriteProject("a.Vl2", 2)), FileType::Velt2);
    EXPECT_EQ(GetFileType(WriteProject("a.vl3", 3)), FileType::Velt3);
    EXPECT_EQ(GetFileType(WriteProject("a.QX5", 4)), FileType::Qx5);
    EXPECT_EQ(GetFileType(WriteProject("b.vl3", 0)), FileType::NotRecognised);
    EXPECT_EQ(GetFileType(WriteProject("c.vl3", 5)), FileType::NotRecognised);
    EXPECT_EQ(GetFileType(WriteProject("d.vl3", '\xFF')), FileType::NotRecognised);
}

TEST_F(FileTypes, AFileWithMagicAndVersionByte3ButNamedVl2IsNotRecognised)
{
    EXPECT_EQ(GetFileType(WriteProject("a.VL2", 3)), FileType::NotRecognised);
}

TEST_F(FileTypes, ANameEndingInTxtInAnyCaseIsTextAlsoWhenTheFileDoesNotExist)
{
    EXPECT_EQ(GetFileType(Path("nowhere.TxT")), FileType::Text);
    EXPECT_FALSE(std::filesystem::exists(Path("nowhere.TxT"))); // looking never creates
    EXPECT_EQ(GetFileType(WriteProject("project.txt", 3)), FileType::Text);
}

TEST_F(FileTypes, ANameEndingInCsvInAnyCaseIsACommaSeparatedTable)
{
    EXPECT_EQ(GetFileType(Path("nowhere.CsV")), FileType::CommaSeparated);
    EXPECT_FALSE(std::filesystem::exists(Path("nowhere.CsV")));
    EXPECT_EQ(GetFileType(WriteProject("project.csv", 3)), FileType::CommaSeparated);
    EXPECT_EQ(GetFileType(Write("csv", "Year,Boats\n1990,5\n")), FileType::NotRecognised);
}

TEST_F(FileTypes, AShortOrMissingFileHasNoType)
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

TEST_F(FileTypes, EveryByteOfTheMagicCounts)
{
    using namespace std::string_literals;
    const std::string head = "\x00\x04\x00\x08\x06\x09ORVO\x03"s;
    for (std::size_t at = 0; at < kProjectMagic.size(); ++at) {
        std::string changed = head;
        changed[at] = static_cast<char>(changed[at] ^ 0x20);
        EXPECT_EQ(GetFileType(Write("changed.vl3", changed)), FileType::NotRecognised) << at;
    }
}

TEST_F(FileTypes, NoExtensionMakesUpForAMissingMagicOrAFileThatIsTooShort)
{
    for (const char* extension : {"qx4", "vl2", "vl3", "qx5"}) {
        const std::string name = std::string("foreign.") + extension;
        EXPECT_EQ(GetFileType(Write(name, "A letter to the harbour master")), FileType::NotRecognised)
            << name;
        EXPECT_EQ(GetFileType(Write(name, "short")), FileType::NotRecognised) << name;
    }
}

TEST_F(FileTypes, WritingOverAFileAsksFirst)
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

TEST_F(FileTypes, ReadingAMissingFileIsToldAndRefused)
{
    const std::string path = Path("none.vl3");

    EXPECT_FALSE(CheckFileAccess(path, FileAccess::Read, reporter));

    ASSERT_EQ(user.messages.size(), 1U);
    EXPECT_EQ(user.messages[0].text, "The file " + path + " doesn't exist.\nPlease select another file. ");
    EXPECT_EQ(user.messages[0].title, "File Message");
}

TEST_F(FileTypes, EverythingElseIsAllowedWithoutABox)
{
    const std::string there = Write("there.vl3", "x");
    EXPECT_TRUE(CheckFileAccess(there, FileAccess::Read, reporter));
    EXPECT_TRUE(CheckFileAccess(Path("new.vl3"), FileAccess::Write, reporter));
    EXPECT_TRUE(CheckFileAccess(Path("new.vl3"), FileAccess::Other4, reporter));
    EXPECT_TRUE(CheckFileAccess(Path("new.vl3"), FileAccess::Other5, reporter));
    EXPECT_TRUE(user.messages.empty());
}

// Not missing: the search of the folder finds it. What is wrong with it is told by who reads it.
TEST_F(FileTypes, ALoopOfLinksIsLeftToTheReader)
{
    const std::string loop = Path("loop.txt");
    std::filesystem::create_symlink(loop, loop);

    EXPECT_TRUE(CheckFileAccess(loop, FileAccess::Read, reporter));
    EXPECT_TRUE(CheckFileAccess(loop, FileAccess::Write, reporter));
    EXPECT_TRUE(user.messages.empty());
    EXPECT_EQ(GetFileType(loop), FileType::Text);
}
