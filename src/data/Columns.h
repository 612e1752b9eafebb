// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

/// The 15 columns of the data set by number. 1 to 9 are the user's, 10 to 15 are filled by fits.
namespace columns
{
inline constexpr int TotCatchWt = 1;    ///< total catch of the period in weight
inline constexpr int TotCatchNums = 2;  ///< total catch in numbers
inline constexpr int MeanWt = 3;        ///< mean weight of an individual
inline constexpr int Effort = 4;        ///< fishing effort
inline constexpr int CatchWt = 5;       ///< catch taken with that effort, in weight
inline constexpr int CatchNums = 6;     ///< the same in numbers
inline constexpr int AbundIndex = 7;    ///< abundance index
inline constexpr int VarAbundIndex = 8; ///< variance of the abundance index
inline constexpr int RecruitIndex = 9;  ///< recruitment index
inline constexpr int ExpCPUE = 10;      ///< expected catch per unit effort of the current fit
inline constexpr int ObsCPUE = 11;      ///< observed catch per unit effort
inline constexpr int ExpCatchWt = 12;   ///< expected catch in weight
inline constexpr int ExpCatchNums = 13; ///< expected catch in numbers
inline constexpr int PopWt = 14;        ///< population biomass
inline constexpr int PopNums = 15;      ///< population numbers

inline constexpr int kFirst = 1;
inline constexpr int kLastUser = 9;
inline constexpr int kLast = 15;

/// Whether only fits write the column.
inline constexpr bool IsSystem(int column)
{
    return column > kLastUser && column <= kLast;
}
} // namespace columns
