// SPDX-License-Identifier: GPL-3.0-or-later
// What the import wizard has chosen before anyone touches it, for every bundled table. The bare "catch" of
// the published tables stays open: they are fitted as total catch, as catch of the effort, and as both.
#include "files/AsciiWizard.h"
#include "files/CsvText.h"
#include "files/ReadWholeFile.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <map>

namespace
{
using Guesses = std::map<std::string, std::string>; ///< of a file: "Time: heading; heading = title; ..."

const Guesses kOfSamples{
    {"albacore_south_atlantic.txt",
     "Time: Year; Tot_Catch_wt = Tot. Catch Wt; Abund_Index = Abundance Index"},
    {"blue_crab.txt", "Time: Week; Tot_Catch_Nums = Tot. Catch Nums; Effort_ = Effort"},
    {"northern_pike.txt", "Time: Period; Tot_Catch_Nums = Tot. Catch Nums; Effort_ = Effort"},
    {"northern_shrimp.txt", "Time: Year; Tot_Catch_Nums = Tot. Catch Nums; Recruit_Index = Recruit. Index; "
                            "Abund_Index = Abundance Index"},
    {"pink_ling.txt", "Time: Year; Tot_Catch_wt = Tot. Catch Wt; Abund_Index = Abundance Index"},
    {"smallmouth_bass.txt", "Time: Period; Tot_Catch_Nums = Tot. Catch Nums; Effort_ = Effort"},
    {"squid_falklands_1990.txt",
     "Time: Day; Tot_Catch_wt = Tot. Catch Wt; Effort_ = Effort; Mean_Wt = Mean Wt"},
};

const Guesses kOfDatasets{
    {"albacore_south_atlantic.csv", "Time: year; index = Abundance Index; effort = Effort"},
    {"blacklip_abalone_abdat.csv", "Time: year; index = Abundance Index; effort = Effort"},
    {"depletion_blue_crab.csv", "Time: period; effort = Effort"},
    {"depletion_fantail_darter.csv", "Time: period; effort = Effort"},
    {"depletion_northern_pike_island_lake.csv", "Time: period; effort = Effort"},
    {"depletion_smallmouth_bass_little_silver.csv", "Time: period; effort = Effort"},
    // "postrecruit_index" is in truth the index of abundance, but only a person can know.
    {"northern_shrimp_gulf_of_maine.csv", "Time: year; recruit_index = Recruit. Index"},
    {"pink_ling_dataspm.csv", "Time: year; index = Abundance Index; effort = Effort"},
    {"production_targets.csv", "Time: "}, // a table of answers, with no periods
    {"simulated_schaefer_200.csv", "Time: year; index = Abundance Index; effort = Effort"},
    {"squid_loligo_gahi_falklands_1990.csv", "Time: day; effort_vessels = Effort; mean_weight_kg = Mean Wt"},
};

AsciiWizard WizardOf(const std::filesystem::path& file)
{
    const std::vector<std::uint8_t> bytes = ReadWholeFile(file.string(), CheckTextSize);
    return {file.string(),
            file.extension() == ".csv" ? ReadCsvText(bytes, file.string()) : ReadAsciiText(bytes),
            {"Tot. Catch Wt", "Tot. Catch Nums", "Mean Wt", "Effort", "Catch Wt", "Catch Nums",
             "Abundance Index", "Var. Abund. Index", "Recruit. Index"}};
}

std::string Said(const std::filesystem::path& file)
{
    AsciiWizard wizard = WizardOf(file);
    wizard.GuessTiming();
    std::string said = "Time: ";
    if (!wizard.CanNext())
        return said;
    said += wizard.collFlexHeadings[static_cast<std::size_t>(wizard.timingColumn - 1)];
    wizard.Next();
    wizard.GuessColumns();
    for (int column = 1; column <= wizard.TextColumns(); ++column)
        if (const int guess = wizard.enuUserColRef(column); guess != AsciiWizard::kNone)
            said += "; " + wizard.collFlexHeadings[static_cast<std::size_t>(column - 1)] + " = " +
                    wizard.ChoiceTitle(guess);
    return said;
}

Guesses SaidOfAll(const std::string& folder)
{
    Guesses all;
    for (const auto& entry : std::filesystem::directory_iterator(VELT_TEST_SAMPLES + folder))
        if (entry.path().extension() != ".md")
            all[entry.path().filename().string()] = Said(entry.path());
    return all;
}
} // namespace

TEST(SampleGuesses, TheBundledSamplesNeedNoChoiceAtAll)
{
    EXPECT_EQ(SaidOfAll("/../../samples"), kOfSamples);
}

TEST(SampleGuesses, NoGuessAmongThePublishedTablesIsWrong)
{
    EXPECT_EQ(SaidOfAll("/datasets"), kOfDatasets);
}
