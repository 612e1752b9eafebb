// SPDX-License-Identifier: GPL-3.0-or-later
#include "data/clsVeltData.h"
#include "fit/clsMethManager.h"
#include "support/LegacyBytes.h"
#include "support/NoHandlesLeft.h"
#include "support/ScriptedUser.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>
#include <fstream>
#include <system_error>

namespace
{
const std::string kSamples = VELT_TEST_SAMPLES "/legacy/";

/// A session at the screen: a project of version 2.0 and the data set that comes out.
class ImportVELT2File : public testing::Test
{
protected:
    ImportVELT2File()
        : m_folder(
              std::filesystem::path(testing::TempDir()) /
              (std::string("velt_legacy_") + testing::UnitTest::GetInstance()->current_test_info()->name()))
    {
        std::filesystem::create_directories(m_folder);
        manager.Create(data);
    }
    ~ImportVELT2File() override { std::filesystem::remove_all(m_folder); }

    std::string Path() const { return (m_folder / "old.vl2").string(); }
    std::string Write(const std::string& bytes) const
    {
        std::ofstream(Path(), std::ios::binary) << bytes;
        return Path();
    }
    bool IsNew() const { return data.Table() == DataTable() && data.DSFName().empty() && !data.IsDirty(); }

    /// The import of `path` fails with one box that says exactly `text`.
    void ExpectRefused(const std::string& path, const std::string& text)
    {
        bench.user.messages.clear();
        EXPECT_FALSE(manager.ImportVELT2File(path));
        ASSERT_EQ(bench.user.messages.size(), 1U);
        EXPECT_EQ(bench.user.messages[0].text, text);
        EXPECT_EQ(bench.user.messages[0].title, "Import Error");
        EXPECT_EQ(bench.user.messages[0].icon, Icon::Exclamation);
        EXPECT_EQ(bench.user.messages[0].buttons, Buttons::Ok);
        EXPECT_TRUE(IsNew());
    }

    Bench bench;
    clsVeltData data{bench.run};
    clsMethManager manager{bench.run};

private:
    std::filesystem::path m_folder;
};
const std::string kUnable = "Unable to Import VELT 2.0 File, Bad File Format.\n";
} // namespace

TEST_F(ImportVELT2File, AGoodFileBecomesTheTableWithoutABox)
{
    EXPECT_TRUE(manager.ImportVELT2File(kSamples + "old_good.vl2"));
    EXPECT_TRUE(bench.user.messages.empty());
    EXPECT_EQ(data.TimeInts(), 20);
    EXPECT_EQ(data.DSFName(), kSamples + "old_good.vl2");
}

TEST_F(ImportVELT2File, AFileWithVersionByte3IsRefused)
{
    ExpectRefused(kSamples + "bad_version3.vl2", kUnable +
                                                     "Invalid or Corrupted *.vl2 File.\n"
                                                     "Byte 11 of the file: the version is 3 and not 2.");
}

TEST_F(ImportVELT2File, ADamagedFileIsRefusedUnderImportErrorWithThePlace)
{
    ExpectRefused(Write(LegacyBytes().Bytes().substr(0, 300)),
                  kUnable + "Invalid or Corrupted *.vl2 File.\n"
                            "Byte 301 of the file: the file ends within its directories.");
    ExpectRefused(Write(LegacyBytes().Scenario(1, LegacyBytes::ScenarioBlock("Quota", {3e9F})).Bytes()),
                  kUnable + "Overflow: value 1 of the scenario \"Quota\" does not fit 32 bits.");
}

TEST_F(ImportVELT2File, AMissingFileIsAFileErrorAndRetryReadsItOnceItIsThere)
{
    bench.user.answers = {Answer::Retry, Answer::Retry};
    bench.user.onShow = [this] {
        if (bench.user.messages.size() == 2)
            Write(LegacyBytes().Bytes());
    };
    EXPECT_TRUE(manager.ImportVELT2File(Path()));
    ASSERT_EQ(bench.user.messages.size(), 2U);
    EXPECT_EQ(bench.user.messages[0].text, "That path doesn't exist.\n" + Path());
    EXPECT_EQ(bench.user.messages[0].title, "File Error");
    EXPECT_EQ(bench.user.messages[0].buttons, Buttons::RetryCancel);
    EXPECT_EQ(data.TimeInts(), 5);
}

TEST_F(ImportVELT2File, CancelAtAFileErrorGivesUpWithADataSetAsNew)
{
    bench.user.answers = {Answer::Cancel};
    EXPECT_FALSE(manager.ImportVELT2File(Path()));
    EXPECT_EQ(bench.user.messages.size(), 1U);
    EXPECT_TRUE(IsNew());
}

TEST_F(ImportVELT2File, AFileWithoutDescriptionIsImportedOnYesAlone)
{
    const std::string path = Write(LegacyBytes("").Bytes());
    for (const Answer answer : {Answer::No, Answer::Cancel}) {
        bench.user.messages.clear();
        bench.user.answers = {answer};
        EXPECT_FALSE(manager.ImportVELT2File(path));
        ASSERT_EQ(bench.user.messages.size(), 1U); // the end of the import is not told again
        EXPECT_EQ(bench.user.messages[0].text,
                  "The File contains no file description, do you wish to continue?");
        EXPECT_EQ(bench.user.messages[0].title, "Import Error");
        EXPECT_EQ(bench.user.messages[0].buttons, Buttons::YesNoCancel);
        EXPECT_TRUE(IsNew());
    }
    bench.user.answers = {Answer::Yes};
    EXPECT_TRUE(manager.ImportVELT2File(path));
    EXPECT_EQ(data.TimeInts(), 5);
}

TEST_F(ImportVELT2File, ASystemErrorThatNoFileErrorListsIsToldAsUnidentifiedWithTheSystemsWords)
{
    const std::string path = Write(LegacyBytes().Bytes());
    {
        const NoHandlesLeft none;
        EXPECT_FALSE(manager.ImportVELT2File(path));
    }
    ASSERT_EQ(bench.user.messages.size(), 1U);
    EXPECT_EQ(bench.user.messages[0].text,
              "Default Error Message: An internal unidentified error has occured.\n" + path + "\n(" +
                  std::system_category().message(EMFILE) + ")");
    EXPECT_TRUE(IsNew());
}
