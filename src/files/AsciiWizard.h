// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "files/AsciiText.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

/// The choices of a text import: step 1 names the text column that holds the periods, step 2 assigns data
/// columns to the others. It holds the rules and shows nothing; names of data columns come in as titles.
///
/// Text columns count from 1 as in the file, data columns from 1 to 9.
struct AsciiWizard {
    static constexpr int kUserColumns = 9;
    static constexpr int kNone = 0; ///< the choice "(None)"

    /// A wizard at step 1 with nothing chosen, for a table with at least one row. `titles` go by data column.
    AsciiWizard(std::string fileName, AsciiText table, std::array<std::string, kUserColumns> titles);

    std::string fileName;
    std::vector<std::string> collFlexHeadings;
    std::vector<std::vector<double>> collFlexData; ///< values of each text column in row order
    std::vector<int> decimals;                     ///< of each text column
    std::vector<std::size_t> lines;                ///< in the file, of each row
    std::vector<std::size_t> missing;              ///< of each text column, line of a missing cell, or 0
    std::array<std::string, kUserColumns> columnTitles;

    int step = 1;
    int timingColumn = 0; ///< text column with the periods; 0 before one is chosen
    std::int16_t intMinTimeP = 0;
    std::int16_t intMaxTimeP = 0;
    bool OK = false; ///< Finish was pressed

    /// Puts a copy of a text column behind the others. \return its number
    /// \throws VeltError 9 for a text column that does not exist
    int CopyColumn(int textColumn);

    int TextColumns() const { return static_cast<int>(collFlexHeadings.size()); }
    std::string Caption() const;     ///< "ASCII File Import : Step 1"
    std::string StepTitle() const;   ///< "Timing", "Data Columns"
    std::string Explanation() const; ///< what to do in this step

    /// Step 1: chooses the first column whose values are whole 16-bit numbers that rise by one from row to
    /// row, as a person may then choose another. One row rises by nothing. Does nothing where no column is
    /// such, or one is chosen. \throws VeltError 9 in step 2
    void GuessTiming();

    /// Step 1. \throws VeltError 9 for a text column that does not exist, and in step 2
    void ChooseTiming(int textColumn);
    bool CanNext() const { return step == 1 && timingColumn != 0; }

    /// Takes the first and the last period of the timing column, rounded to whole numbers, ties to even;
    /// those between are not looked at. \throws ImportError 6 for a label outside 16 bits, 2257 for a missing
    /// one anywhere; 9 when nothing is chosen
    void Next();

    /// Step 2: assigns the data columns that headings plainly name (GuessDataColumn) to text columns without
    /// one. Of two headings for a data column the first has it. \throws VeltError 9 in step 1
    void GuessColumns();

    /// Returns to step 1 and forgets every assignment.
    void Back();
    bool CanBack() const { return step == 2; }

    /// Data column of a text column, kNone for none.
    int enuUserColRef(int textColumn) const;
    /// Whether a data column is taken.
    bool blnVELTColSel(int dataColumn) const;

    /// The list for a text column: kNone, then the data columns that are free or its own.
    std::vector<int> Choices(int textColumn) const;
    /// Words of a choice: "(None)" or the title of the data column.
    std::string ChoiceTitle(int dataColumn) const;

    /// Assigns a data column, or frees the text column with kNone. \throws VeltError 9 for the timing column,
    /// a column that does not exist, and a data column that another text column has
    void Assign(int textColumn, int dataColumn);

    bool CanFinish() const { return step == 2; } ///< also with nothing assigned
    void Finish();                               ///< \throws VeltError 9 outside step 2

private:
    std::size_t Index(int textColumn) const;
    std::vector<int> m_userColRef;
};
