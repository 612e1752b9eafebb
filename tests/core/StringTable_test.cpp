// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/StringTable.h"

#include "base/VeltError.h"

#include <gtest/gtest.h>

#include <fstream>
#include <map>
#include <string>

namespace
{
/// The list of texts as the translators get it: id, tab, text, one a line.
std::map<int, std::string> ListOfTexts()
{
    std::ifstream file(VELT_TEST_SAMPLES "/texts.tsv");
    std::map<int, std::string> texts;
    for (std::string line; std::getline(file, line);) {
        const auto tab = line.find('\t');
        texts[std::stoi(line.substr(0, tab))] = line.substr(tab + 1);
    }
    return texts;
}
} // namespace

TEST(StringTable, HoldsEveryTextOfTheListAndNoOther)
{
    const std::map<int, std::string> texts = ListOfTexts();
    ASSERT_EQ(texts.size(), 351U);
    EXPECT_EQ(kStringCount, texts.size());

    for (const auto& [id, text] : texts)
        EXPECT_EQ(LoadResString(id), text) << "id " << id;
    for (int id = -1; id <= 2100; ++id) {
        if (!texts.contains(id)) {
            EXPECT_THROW(LoadResString(id), VeltError) << "id " << id;
        }
    }
}

TEST(StringTable, BlanksThatPadATextBelongToIt)
{
    EXPECT_EQ(LoadResString(1812), "NO RECRUITMENT        ");
    EXPECT_EQ(LoadResString(1812).size(), 22U);
    EXPECT_EQ(LoadResString(1816), "PROD. MODEL(SCHAEFER)");
    EXPECT_EQ(LoadResString(1816).size(), 21U); // deliberate: one shorter than its neighbours
    EXPECT_EQ(LoadResString(1818), "LSQ Fit   ");
    EXPECT_EQ(LoadResString(50), "File Description ; ");
    EXPECT_EQ(LoadResString(1803), " vs Time");
}

TEST(StringTable, AMissingIdIsAFailureThatNamesIt)
{
    try {
        LoadResString(4); // a separator of the menu
        FAIL() << "there is no text 4";
    } catch (const VeltError& error) {
        EXPECT_EQ(error.number, errors::kInvalidArgument);
        EXPECT_NE(error.description.find("4"), std::string::npos);
    }
}

TEST(StringTable, MenuSeparatorsHaveNoText)
{
    for (const int id : {4, 7, 10, 11, 16, 18, 27, 36, 39})
        EXPECT_THROW(LoadResString(id), VeltError) << id;
}
