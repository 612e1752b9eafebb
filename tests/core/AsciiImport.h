// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "data/clsVeltData.h"
#include "files/AsciiWizard.h"
#include "fit/clsMethManager.h"
#include "support/ScriptedUser.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <filesystem>
#include <fstream>
#include <string>
#include <utility>
#include <vector>

namespace ascii_import
{
inline const std::string kSamples = VELT_TEST_SAMPLES "/import/";

/// A session at the screen: a file, a person at the wizard, and the data set that comes out.
class ImportASCIIFile : public testing::Test
{
protected:
    ImportASCIIFile()
        : m_folder(
              std::filesystem::path(testing::TempDir()) /
              (std::string("velt_import_") + testing::UnitTest::GetInstance()->current_test_info()->name()))
    {
        std::filesystem::create_directories(m_folder);
        manager.Create(data);
    }
    ~ImportASCIIFile() override { std::filesystem::remove_all(m_folder); }

    std::string Write(const std::string& text, const std::string& name = "typed.txt")
    {
        const std::string path = (m_folder / name).string();
        std::ofstream(path, std::ios::binary) << text;
        return path;
    }

    /// The user takes text column `timing` for the periods, assigns what `assign` says and finishes.
    void UserAssigns(int timing, std::vector<std::pair<int, int>> assign)
    {
        bench.user.onAsciiWizard = [timing, assign](AsciiWizard& wizard) {
            wizard.ChooseTiming(timing);
            wizard.Next();
            for (const auto& [textColumn, dataColumn] : assign)
                wizard.Assign(textColumn, dataColumn);
            wizard.Finish();
            return true;
        };
    }

    /// The same, with every heading that is the export name of a user column assigned to it.
    void UserAssignsByHeading()
    {
        bench.user.onAsciiWizard = [this](AsciiWizard& wizard) {
            wizard.ChooseTiming(1);
            wizard.Next();
            for (int i = 2; i <= wizard.TextColumns(); ++i) {
                for (int column = 1; column <= 9; ++column) {
                    if (wizard.collFlexHeadings[static_cast<std::size_t>(i - 1)] ==
                            bench.run.globals.ColumnFileNames(column) &&
                        !wizard.blnVELTColSel(column))
                        wizard.Assign(i, column);
                }
            }
            wizard.Finish();
            return true;
        };
    }

    /// The data set is as new.
    void ExpectEmpty()
    {
        EXPECT_EQ(data.DSDesc(), "");
        EXPECT_EQ(data.DSFName(), "");
        EXPECT_EQ(data.TimeInts(), 0);
        EXPECT_EQ(data.NAPoints(), 0);
        EXPECT_FALSE(data.IsDirty());
        for (int column = 1; column <= 15; ++column) {
            EXPECT_FALSE(data.ColPresent(column));
            EXPECT_EQ(data.DB(column, 1), -1.0F);
        }
        EXPECT_TRUE(data.ToggledIn(1));
        EXPECT_FALSE(data.Included(1));
    }

    /// The import of `path` fails with one box that says exactly `text`.
    void ExpectRefused(const std::string& path, const std::string& text)
    {
        bench.user.messages.clear();
        EXPECT_FALSE(manager.ImportASCIIFile(path));
        ASSERT_EQ(bench.user.messages.size(), 1U) << path;
        EXPECT_EQ(bench.user.messages[0].text, text);
        EXPECT_EQ(bench.user.messages[0].icon, Icon::Exclamation);
        ExpectEmpty();
    }

    Bench bench;
    clsVeltData data{bench.run};
    clsMethManager manager{bench.run};

private:
    std::filesystem::path m_folder;
};

inline const std::string kBadColumns = "Bad number of data columns. Please correct and reload file.\n";
inline const std::string kBadData = "Invalid or missing data. Please correct and reload file.\n";
} // namespace ascii_import
