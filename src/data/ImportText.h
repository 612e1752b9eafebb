// SPDX-License-Identifier: GPL-3.0-or-later
// The road of a text table of periods into a data set. It shows nothing: what it needs to know it asks
// whoever started it, what goes wrong it raises.
#pragma once

#include "files/AsciiText.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>

class clsVeltData;
struct AsciiWizard;

/// The first row whose time label is not that of the row before plus one, both rounded to whole numbers.
struct UnevenLabels {
    std::size_t line = 0; ///< in the file
    double before = 0.0;  ///< label of the row before, as the file has it
    double label = 0.0;

    std::string Sentence() const; ///< names the line and both labels
};

/// Nothing when every label follows the one before. Ties are rounded to even.
/// \param lines  in the file, one a label
std::optional<UnevenLabels> FindUnevenLabels(std::span<const double> labels,
                                             std::span<const std::size_t> lines);

/// What an import asks whoever started it, in this order; false from any of them cancels it. An
/// implementation may raise instead, and the import ends with what it raised.
class IImportQuestions
{
public:
    virtual ~IImportQuestions() = default;
    virtual bool GoesOnWithoutDescription() = 0;
    /// Names the timing column and assigns the others. The import goes on when Finish was pressed.
    virtual bool Assigns(AsciiWizard& wizard) = 0;
    virtual bool TakesAsConsecutive(const UnevenLabels& labels) = 0;
};

/// Makes `data` the table that `bytes`, a text file as ReadAsciiText reads it, hold. A missing description is
/// asked about before anything else is looked at.
///
/// \param path  of the file, for DSFName
/// \throws ImportError    the file, its labels or its values cannot be taken; with the place
/// \throws VeltError 2263 cancelled, with the program's base; 5, 6, 11 from the column conversions
/// `data` is as new after every failure.
void ImportText(clsVeltData& data, const std::string& path, std::span<const std::uint8_t> bytes,
                IImportQuestions& questions);

/// The same for a comma-separated table as ReadCsvText reads it, which has the file's name as description.
void ImportCsv(clsVeltData& data, const std::string& path, std::span<const std::uint8_t> bytes,
               IImportQuestions& questions);

/// The same for a table that was read already; its headings may be any text.
void ImportTable(clsVeltData& data, const std::string& path, AsciiText table, IImportQuestions& questions);
