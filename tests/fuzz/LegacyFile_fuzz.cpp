// SPDX-License-Identifier: GPL-3.0-or-later
// Whatever the bytes, a project of version 2.0 becomes a data set that makes sense and that a project of this
// version holds without a change, or it is refused in one sentence and the data set is as new.
#include "data/ImportLegacy.h"
#include "data/ProjectData.h"
#include "data/clsVeltData.h"
#include "fuzz/FuzzChecks.h"
#include "fuzz/FuzzDesk.h"

#include <algorithm>
#include <cstring>

namespace
{
constexpr std::int32_t kMostSaved = 3; // fifty scenarios are slow to write and to read again

bool IsNew(const clsVeltData& data)
{
    return data.Table() == DataTable() && data.DSDesc().empty() && data.DSFName().empty() &&
           data.NumProjScenarios() == 0 && data.NumLoggedRuns() == 0 && !data.IsDirty();
}

void CheckTable(const clsVeltData& data)
{
    Demand(data.TimeInts() == data.MaxTimeP() - data.MinTimeP() + 1, "periods are those of the range");
    Demand(data.NAPoints() == data.TimeInts() && data.OrigNAPoints() == data.TimeInts() &&
               data.NNtPoints() == data.TimeInts() && data.NDPoints() == data.TimeInts() + 1,
           "counters are those of the range");
    for (int row = 1; row <= clsVeltData::kRows; ++row)
        Demand(data.Included(row) == (row <= data.ShownRows()), "the rows that exist are included");
    for (int column = columns::kFirst; column <= columns::kLast; ++column) {
        const auto& cells = data.Column(column).All();
        const auto behind = cells.begin() + (data.ColPresent(column) ? data.ShownRows() : 0);
        Demand(std::count(behind, cells.end(), -1.0F) == cells.end() - behind,
               "there are no values but in the rows and columns that exist");
    }
}

void CheckTexts(const clsVeltData& data)
{
    constexpr std::size_t kMostBytes = 3; // of a character of the code page in UTF-8
    Demand(IsUtf8(data.DSDesc()), "the description is UTF-8", data.DSDesc());
    Demand(data.DSDesc().size() <= kMostBytes * clsVeltData::kDescriptionWidth, "descriptions are short");
    Demand(data.NumProjScenarios() <= 50, "as many scenarios as entries");
    for (std::int32_t i = 1; i <= data.NumProjScenarios(); ++i) {
        Demand(IsUtf8(data.ProjScenario(i)->Title()), "titles are UTF-8");
        Demand(data.ProjScenario(i)->Title().size() <= kMostBytes * clsProjScenario::kTitleWidth,
               "titles are short");
    }
}

bool SameBits(const clsVeltData::Series& a, const clsVeltData::Series& b)
{
    return std::memcmp(a.All().data(), b.All().data(), sizeof(float) * a.All().size()) == 0;
}

void CheckSavedAndOpened(const clsVeltData& data, Run& run)
{
    project_file::Project project = ProjectOf(data);
    const OpenedProject opened = ReadProjectData(project_file::WriteProject(project, {}), run);
    const clsVeltData& again = opened.data;
    Demand(!again.IsDirty(), "a project that was written opens without a change");
    Demand(again.DSDesc() == data.DSDesc(), "the description survives a save", data.DSDesc());
    Demand(again.TimeInts() == data.TimeInts(), "the range survives a save");
    Demand(again.NumProjScenarios() == data.NumProjScenarios(), "scenarios survive a save");
    for (std::int32_t i = 1; i <= data.NumProjScenarios(); ++i) {
        const clsProjScenario& before = *data.ProjScenario(i);
        const clsProjScenario& after = *again.ProjScenario(i);
        Demand(before.Title() == after.Title() && before.VecType() == after.VecType(), "a scenario survives");
        for (int k = 1; k <= clsProjScenario::kPoints; ++k)
            Demand(before.Vector(k) == after.Vector(k), "values of a scenario survive");
    }
    // Conversions derive columns from these, and may replace the catch and the effort by an index.
    for (const int column : {columns::TotCatchWt, columns::AbundIndex, columns::RecruitIndex})
        if (data.ColPresent(column) && again.ColPresent(column))
            Demand(SameBits(data.Column(column), again.Column(column)), "a column survives a save");
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size)
{
    static Desk desk; // its texts are read once
    static clsVeltData data(desk.run);
    try {
        ImportLegacy(data, "fuzz.vl2", TextOf({bytes, size}), [size] { return size % 2 == 0; });
    } catch (const VeltError& error) {
        DemandSentence(error.description);
        Demand(IsNew(data), "a failed import leaves a data set as new");
        return 0;
    }
    Demand(data.IsDirty() && data.DSFName() == "fuzz.vl2", "an import is a change");
    CheckTable(data);
    CheckTexts(data);
    if (data.NumProjScenarios() <= kMostSaved)
        CheckSavedAndOpened(data, desk.run);
    Demand(desk.user.messages.empty(), "a reader shows nothing");
    return 0;
}
