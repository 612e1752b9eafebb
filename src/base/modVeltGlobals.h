// SPDX-License-Identifier: GPL-3.0-or-later
// The texts that are looked up once at start and the settings that hold for the run.
#pragma once

#include "base/Array1.h"

#include <cstdint>
#include <string>

namespace modVeltGlobals
{

/// How the minimiser ends: both tests met, or either one.
inline constexpr std::int32_t kConvergeOnBoth = 3;
inline constexpr std::int32_t kConvergeOnEither = 0;

/// Settings of the minimiser and the bootstraps, as the Options dialog changes them.
struct Settings {
    float sngFTOL = 1e-07F; ///< converged when the spread of values < sngFTOL * their size
    float sngXTOL = 1e-04F; ///< converged when the spread of points < sngXTOL * the point
    std::int16_t intMaxIts = 500;
    std::int32_t NumBootStraps = 500;
    std::int32_t ConvergeOn = kConvergeOnBoth;
    std::int32_t BootStrapConvergeOn = kConvergeOnEither; ///< no dialog changes it
    std::int32_t LastEvaluations = 0;                     ///< evaluations that the last final fit used
};

/// Texts of the string table that many places use, by the names of their use. Arrays count from 1.
struct Globals {
    Settings settings;

    Array1<std::string, 7> GraphTitles;
    Array1<std::string, 4> ResidTitles;
    Array1<std::string, 6> ModelTitles;
    Array1<std::string, 4> FitOpTitles;
    Array1<std::string, 8> ParamNames;
    Array1<std::string, 15> ColumnFileNames;
    Array1<std::string, 15> ColumnDisplayNames;
    Array1<std::string, 5> ExcuseTexts;

    std::string RSqrTitle, CPUETitle, Ready, FitTitle, ModelTitle, DateTitle, FitNameTitle, PopulationTitle,
        CalculatingBootstraps, SortingBootstraps, CountTitle, GeneratingConfInts, TimeTitle, IncludeTitle,
        ComputingGammaCatchMatrix, SavingFile, TextExport, DrawingContours, Minimisation, Selected,
        UnSelected, ZShape, NatMortality, InitProportion, TimeLag, N1, Q, FinalPopulation, Lambda,
        ReplacementYield, FinalBiomass, K, R, MSY, InitialPopulation, Page, Of, Help;

    // Of no string table:
    std::string UnableToPrint = "Unable to Print. Check Printer is set up correctly.";
    std::string ColumnTooLarge =
        "A single data column is too large to print. Alter column formats and retry.";

    bool cached = false;
};

/// Fills the texts from the string table. \return false when that was done before: the first caller wins.
bool CacheStrings(Globals& globals);

} // namespace modVeltGlobals
