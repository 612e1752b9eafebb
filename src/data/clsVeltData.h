// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/Array1.h"
#include "base/Run.h"
#include "data/DataTable.h"
#include "data/KeyedList.h"
#include "data/clsFit.h"
#include "data/clsProjScenario.h"
#include "files/WholeFile.h"

#include <array>
#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <string_view>

class IImportQuestions;

/// The one data set of a run: 200 time periods by 15 columns of 32-bit floats, the selection flags, a few
/// counters, description and file name, the logged fits and the projection scenarios. The models read their
/// series from it and write their expected series back; nothing may grow the table, its sizes are those of
/// the project file.
///
/// Rows and columns count from 1; row r is the period MinTimeP + r - 1. A row outside 1 to 200 raises 9.
/// A property is two overloads of one name: `data.Effort(r)` reads, `data.Effort(r, v)` writes; without a row
/// the series getters give the whole column.
class clsVeltData
{
public:
    static constexpr int kRows = DataTable::kRows;
    static constexpr float kMissing = DataTable::kMissing;
    static constexpr std::size_t kFormatWidth = 20;
    static constexpr std::size_t kDescriptionWidth = 40; ///< characters that survive a save

    using Series = DataTable::Series;
    using Flags = DataTable::Flags;
    using LoggedFits = KeyedList<clsFit, clsFit::kNameWidth>;
    using ProjScenarios = KeyedList<clsProjScenario, clsProjScenario::kTitleWidth>;

    explicit clsVeltData(Run& run);

    /// The table as a value. Putting another in its place does not mark the data set as changed: whoever does
    /// it knows whether it is a change.
    const DataTable& Table() const { return m_table; }
    void Table(DataTable table) { m_table = std::move(table); }

    // By number. A column outside 1 to 15 reads 0 and takes nothing.
    float DB(int column, int row) const;
    void DB(int column, int row, float value); ///< marks the data set as changed
    const Series& Column(int column) const;    ///< \throws VeltError 9 outside 1 to 15

    std::string ColFormat(int column) const;               ///< number format, trimmed
    void ColFormat(int column, const std::string& format); ///< cut to 20 characters; marks as changed
    void FormatFilled(int column) { m_table.FormatFilled(column); } ///< see DataTable; no change of the data
    static bool DBSysOnly(int column) { return columns::IsSystem(column); }
    std::int16_t NumDPs(int row) const;
    void NumDPs(int row, std::int16_t value);
    std::int32_t DecPlaces(int column) const { return m_table.decPlaces(column); }
    void DecPlaces(int column, std::int32_t value);
    bool ColPresent(int column) const { return m_table.present(column); }
    void ColPresent(int column, bool present) { m_table.present(column) = present; }

    // Which rows take part: Included, the data allow it; ToggledIn, the user lets it.
    bool Included(int row) const { return m_table.included(row); }
    void Included(int row, bool value) { m_table.included(row) = value; }
    const Flags& Included() const { return m_table.included; }
    bool ToggledIn(int row) const { return m_table.toggledIn(row); }
    void ToggledIn(int row, bool value) { m_table.toggledIn(row) = value; }
    const Flags& ToggledIn() const { return m_table.toggledIn; }
    /// See DataTable; the user's own choice, so no change of the data.
    void Include(int row, bool usable) { m_table.Include(row, usable); }
    void Toggle(int row) { m_table.Toggle(row); }
    void ToggleOut(int row) { m_table.ToggleOut(row); }

    // Counters and labels; "dirty" behind those that mark the data set as changed when set.
    std::int32_t TimeInts() const { return m_table.timeInts; }
    void TimeInts(std::int32_t value) { Set(m_table.timeInts, value); } // dirty
    std::int32_t ProjNum() const { return m_projNum; }
    void ProjNum(std::int32_t value) { Set(m_projNum, value); } // dirty
    std::int32_t MaxTimeP() const { return m_table.maxTimeP; }
    void MaxTimeP(std::int32_t value) { Set(m_table.maxTimeP, value); } // dirty
    std::int32_t MinTimeP() const { return m_table.minTimeP; }
    void MinTimeP(std::int32_t value) { Set(m_table.minTimeP, value); } // dirty
    const std::string& DSDesc() const { return m_dsDesc; }
    void DSDesc(std::string text) { Set(m_dsDesc, std::move(text)); } // dirty
    const std::string& DSFName() const { return m_dsFName; }
    void DSFName(std::string path) { m_dsFName = std::move(path); }
    std::int32_t NAPoints() const { return m_table.naPoints; }
    void NAPoints(std::int32_t value) { m_table.naPoints = value; }
    std::int32_t OrigNAPoints() const { return m_table.origNAPoints; }
    /// Marks the data set as changed, so that a projection alone leads to the question on Close.
    void OrigNAPoints(std::int32_t value) { Set(m_table.origNAPoints, value); }
    std::int32_t NNtPoints() const { return m_table.nntPoints; }
    void NNtPoints(std::int32_t value) { m_table.nntPoints = value; }
    std::int32_t NumScens() const { return m_numScens; }
    void NumScens(std::int32_t value) { Set(m_numScens, value); } // dirty
    std::int32_t NumPts() const { return m_numPts; }
    void NumPts(std::int32_t value) { m_numPts = value; }
    std::int32_t NDPoints() const { return m_table.ndPoints; }
    void NDPoints(std::int32_t value) { m_table.ndPoints = value; }

    bool IsDirty() const { return m_isDirty; }
    /// What stands on disk is what stands here.
    void MarkSaved() { m_isDirty = false; }
    void MarkChanged() { m_isDirty = true; }

    // As the project file told them; nothing in the program changes them.
    std::int32_t NumLoggedRuns() const { return m_stored.numLoggedRuns; }
    std::int32_t V2KLoggedFits() const { return m_stored.loggedFits; }
    std::int32_t V2kProjScens() const { return m_stored.projScens; }

    /// Counts as a project file tells them.
    struct StoredCounts {
        std::int32_t numLoggedRuns = 0;
        std::int32_t loggedFits = 0;
        std::int32_t projScens = 0;
    };
    void Stored(const StoredCounts& counts) { m_stored = counts; }

    /// True: the next file operation handles the body of a logged fit, not the project's own data.
    bool LogOrReload() const { return m_logOrReload; }
    void LogOrReload(bool value) { m_logOrReload = value; }

    // Projection scenarios, in the order of adding, from 1. Titles are told apart by their first 30
    // characters. Null where there is none.
    ProjScenarios& ProjScens() { return m_projScens; }
    const ProjScenarios& ProjScens() const { return m_projScens; }
    std::int32_t NumProjScenarios() const { return m_projScens.Count(); }
    /// Marks the data set as changed only while LogOrReload is true, deliberately: opening a project is no
    /// change. Who adds at the user's wish sets NumScens. \throws VeltError 5 when the key is taken.
    void AddProjScenario(clsProjScenario scenario, std::string_view key);
    clsProjScenario* ProjScenario(std::int32_t index) { return m_projScens.Find(index); }
    const clsProjScenario* ProjScenario(std::int32_t index) const { return m_projScens.Find(index); }
    clsProjScenario* ProjScenario(std::string_view title) { return m_projScens.Find(title); }
    const clsProjScenario* ProjScenario(std::string_view title) const { return m_projScens.Find(title); }

    // Logged fits, in the order of adding, from 1. Names are told apart by their 50 characters. A reference
    // to a fit holds until that fit is deleted or the data set goes.
    std::int32_t NumLoggedFits() const { return m_loggedFits.Count(); }
    /// Marks the data set as changed only while LogOrReload is true, deliberately: opening a project is no
    /// change. \throws VeltError 5 when the name is taken.
    void AddLoggedFit(clsFit fit);
    bool HasLoggedFit(std::string_view name) const { return m_loggedFits.Has(name); }
    /// \throws VeltError 9 when there is none
    clsFit& LoggedFit(std::int32_t index) { return m_loggedFits.At(index); }
    const clsFit& LoggedFit(std::int32_t index) const { return m_loggedFits.At(index); }
    void DeleteLoggedFit(std::string_view name); ///< dirty. \throws VeltError 5 when there is none
    /// All of them, to be put back when a deletion does not reach the disk. References to fits do not
    /// survive.
    const LoggedFits& Fits() const { return m_loggedFits; }
    void Fits(LoggedFits fits) { m_loggedFits = std::move(fits); }

    /// A new logged fit of that name, made at the moment `now`; marks the data set as changed.
    /// \param whichMeth, fitOp  numbers of the model and of its error model
    /// \throws VeltError 5 when the name is taken
    clsFit& NewLoggedFit(std::int32_t whichMeth, std::int32_t fitOp, const std::string& name, double now);

    /// Drops the system columns from view; their values stay.
    void Reset();

    /// Makes a system column absent and sets its 200 values to 0, as the fit manager does when it goes.
    void ClearSystemColumn(int column);

    /// Derives the columns that can be derived from what is present and decides which rows are usable.
    /// Does not mark the data set as changed. \throws VeltError 11, 6 when a derivation fails; the data set
    /// is then as it was.
    void DoColumnConversions();

    // Rows and columns come and go; see StructuralEditing. All mark the data set as changed.
    void ShiftData(std::int16_t amount, std::int16_t start = 1);
    void EmptyData(std::int16_t first, std::int16_t last);
    void AddColumn(int column);
    void EraseColumn(int column);
    void InsertRows(int top, int count);
    void DeleteRows(int top, int count);
    void AddRows(int count);

    /// True when every one of `wanted` is present; false for an empty list.
    bool CheckRqCols(std::span<const int> wanted) const;

    /// Reads a text file of periods, as ImportText does with its bytes. \throws FileError the file cannot be
    /// read; otherwise as ImportText. The data set is as new after every failure.
    void ImportASCIIFile(const std::string& path, IImportQuestions& questions);

    /// The same for a comma-separated table, as ImportCsv.
    void ImportCSVFile(const std::string& path, IImportQuestions& questions);

    /// Prints the whole table: the columns in groups as wide as the page, each group on pages of its own.
    /// Tells the user when the printer fails or its page is too small for a column; changes nothing.
    void PrintData(IPrinter& printer) const;

    /// Reads a project of version 2.0, as ImportLegacy does with its bytes. `goesOn` answers whether a file
    /// without description is imported all the same. \throws FileError the file cannot be read; otherwise as
    /// ImportLegacy. The data set is as new after every failure.
    void ImportVELT2File(
        const std::string& path, const std::function<bool()>& goesOn = [] { return true; });

    /// Writes the table as text, as TextOf makes it; what stood under the name stays until the new file is
    /// whole. \throws WriteError, VeltError as TextOf
    void ExportToASCIIFile(const std::string& path, const FileCalls& calls = SystemFileCalls()) const;

    int ShownRows() const { return m_table.ShownRows(); } ///< rows that exist

    Run& TheRun() const { return m_run; }

private:
    template <typename T>
    void Set(T& field, T value)
    {
        field = std::move(value);
        m_isDirty = true;
    }

    std::reference_wrapper<Run> m_run; // not a plain reference: a data set built aside is moved in whole
    DataTable m_table;
    std::int32_t m_numPts = 0, m_numScens = 0, m_projNum = 0;
    StoredCounts m_stored;
    LoggedFits m_loggedFits;
    ProjScenarios m_projScens;
    bool m_logOrReload = false;
    std::string m_dsDesc;
    std::string m_dsFName;
    bool m_isDirty = false;

    // Last, as the formatter does not see through it.
public:
    // By name. These do not mark the data set as changed, so that a fit leaves it as it was.
    // clang-format off
#define VELT_SERIES(Name)                                                   \
    float Name(int row) const { return m_table.db(columns::Name)(row); }    \
    void Name(int row, float value) { m_table.db(columns::Name)(row) = value; } \
    const Series& Name() const { return m_table.db(columns::Name); }
    VELT_SERIES(PopNums)
    VELT_SERIES(PopWt)
    VELT_SERIES(ExpCatchNums)
    VELT_SERIES(ExpCatchWt)
    VELT_SERIES(ObsCPUE)
    VELT_SERIES(ExpCPUE)
    VELT_SERIES(RecruitIndex)
    VELT_SERIES(VarAbundIndex)
    VELT_SERIES(AbundIndex)
    VELT_SERIES(CatchNums)
    VELT_SERIES(CatchWt)
    VELT_SERIES(Effort)
    VELT_SERIES(MeanWt)
    VELT_SERIES(TotCatchNums)
    VELT_SERIES(TotCatchWt)
#undef VELT_SERIES
    // clang-format on
};
