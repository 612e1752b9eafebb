// SPDX-License-Identifier: GPL-3.0-or-later
#include "data/ScenarioSheet.h"

#include "base/Checked.h"
#include "base/NumberText.h"
#include "base/StringTable.h"
#include "base/Text.h"
#include "data/NumberFormat.h"
#include "data/ProjectData.h"
#include "data/TypedNumber.h"

#include <algorithm>
#include <optional>

namespace
{
constexpr int kDefaultName = 910;
constexpr int kTime = 1877;
constexpr int kSureToDelete = 1933;
constexpr int kCannotRemoveAll = 1934;
constexpr int kBadTitle = 1936;

/// The value as a scenario keeps it, a whole number; nothing for what is none or does not fit.
std::optional<std::int32_t> KeptValue(const std::string& text)
{
    return TypedNumber(text, checked::ToInt32);
}

std::string Shown(double value)
{
    return FormatNumber(static_cast<float>(value), "0.000");
}

/// A title as a project keeps it.
std::string KeptTitle(const std::string& typed)
{
    return Trim(PadString(Trim(typed), clsProjScenario::kTitleWidth));
}

std::size_t IndexOf(int oneBased)
{
    return static_cast<std::size_t>(oneBased - 1);
}
} // namespace

std::vector<std::string> ScenarioSheet::Units()
{
    return {"Effort", "Total Catch Weight", "Total Catch Numbers"};
}

void ScenarioSheet::Load(clsVeltData* data)
{
    m_data = data;
    m_columns.clear();
    m_points = 0;
    if (!m_data)
        return;
    m_firstRow = m_data->NAPoints() + 1;
    if (m_data->NumProjScenarios() == 0) {
        m_data->NumPts(0);
        MoreScenarios();
        MorePoints();
        return;
    }
    m_points = std::clamp(m_data->NumPts(), 0, std::max(0, clsProjScenario::kPoints - m_data->NAPoints()));
    for (std::int32_t i = 1; i <= m_data->NumProjScenarios(); ++i) {
        const clsProjScenario& scenario = *m_data->ProjScenario(i);
        Column& column = m_columns.emplace_back(Column{scenario.Title(), {}});
        for (int k = 1; k <= m_points; ++k)
            column.shown.push_back(Shown(scenario.Vector(m_data->NAPoints() + k)));
    }
}

bool ScenarioSheet::IsOutOfStep() const
{
    return m_firstRow != m_data->NAPoints() + 1 || Scenarios() != m_data->NumProjScenarios();
}

int ScenarioSheet::Rows() const
{
    return kFirstDataRow +
           (m_data ? std::max(m_points, clsProjScenario::kMostPeriods - m_data->NAPoints()) : 0);
}

int ScenarioSheet::Cols() const
{
    return kFirstCol + std::max(Scenarios(), kMostScenarios);
}

std::string ScenarioSheet::Text(int row, int col) const
{
    if (col == kTimeCol) {
        if (row == kTitleRow)
            return LoadResString(kTime);
        return IsPoint(row) ? std::to_string(std::int64_t{m_data->MinTimeP()} + RowOfTable(row) - 1) : "";
    }
    if (!IsScenario(col))
        return {};
    const Column& column = m_columns[IndexOf(col)];
    if (row == kTitleRow)
        return column.title;
    if (row == kUnitRow) {
        const auto unit = static_cast<std::size_t>(UnitOf(col));
        return unit < Units().size() ? Units()[unit] : std::string();
    }
    return IsPoint(row) ? column.shown[static_cast<std::size_t>(row - kFirstDataRow)] : std::string();
}

void ScenarioSheet::ShowText(int row, int col, const std::string& text)
{
    if (IsScenario(col) && IsPoint(row))
        m_columns[IndexOf(col)].shown[static_cast<std::size_t>(row - kFirstDataRow)] = text;
}

clsProjScenario& ScenarioSheet::ScenarioAt(int col) const
{
    return *m_data->ProjScenario(m_columns[IndexOf(col)].title);
}

int ScenarioSheet::RowOfTable(int row) const
{
    return m_data->NAPoints() + row - kFirstDataRow + 1;
}

std::int32_t ScenarioSheet::UnitOf(int col) const
{
    return IsScenario(col) ? ScenarioAt(col).VecType() : vec_type::kEffort;
}

void ScenarioSheet::Unit(int col, std::int32_t vecType)
{
    if (!IsScenario(col) || UnitOf(col) == vecType)
        return;
    ScenarioAt(col).VecType(vecType);
    MarkChanged();
    m_window.Changed();
}

/// The number of scenarios marks the data set as changed when it is set; a number of periods alone does not.
void ScenarioSheet::MarkChanged()
{
    m_data->NumScens(m_data->NumProjScenarios());
}

std::string ScenarioSheet::NewTitle() const
{
    for (int number = 1;; ++number) {
        std::string title = LoadResString(kDefaultName) + std::to_string(number);
        if (!m_data->ProjScenario(title))
            return title;
    }
}

/// One scenario more, of zeros. \return false when there is no room
bool ScenarioSheet::MoreScenarios()
{
    if (Scenarios() >= kMostScenarios)
        return false;
    clsProjScenario scenario;
    scenario.Title(NewTitle());
    for (int k = 1; k <= m_points; ++k)
        scenario.Vector(m_data->NAPoints() + k, 0.0);
    m_columns.push_back({scenario.Title(), std::vector(static_cast<std::size_t>(m_points), Shown(0.0))});
    const std::string title = scenario.Title();
    m_data->AddProjScenario(std::move(scenario), title);
    return true;
}

/// One period more, of zeros: what a scenario kept behind its end comes not to life again, as nobody saw it.
/// \return false when there is no room
bool ScenarioSheet::MorePoints()
{
    if (m_data->NAPoints() + m_points >= clsProjScenario::kMostPeriods)
        return false;
    m_data->NumPts(++m_points);
    for (int col = kFirstCol; IsScenario(col); ++col) {
        ScenarioAt(col).Vector(m_data->NAPoints() + m_points, 0.0);
        m_columns[IndexOf(col)].shown.push_back(Shown(0.0));
    }
    return true;
}

void ScenarioSheet::AddScenario()
{
    if (!MoreScenarios()) {
        m_user.Show({.text = "There can be " + std::to_string(kMostScenarios) +
                             " scenarios. Delete one before you add another."});
        return;
    }
    MarkChanged();
    m_window.Changed();
}

void ScenarioSheet::AddRow()
{
    if (!MorePoints()) {
        m_user.Show({.text = "With " + std::to_string(m_data->NAPoints()) + " periods of data there can be " +
                             std::to_string(std::max(0, clsProjScenario::kMostPeriods - m_data->NAPoints())) +
                             " future periods: together they can be " +
                             std::to_string(clsProjScenario::kMostPeriods) + "."});
        return;
    }
    m_window.Changed();
}

void ScenarioSheet::DeleteRow()
{
    if (m_points <= 1) {
        m_user.Show({.text = LoadResString(kCannotRemoveAll)});
        return;
    }
    m_data->NumPts(--m_points);
    for (Column& column : m_columns)
        column.shown.pop_back();
    m_window.Changed();
}

bool ScenarioSheet::DeleteScenario(int col)
{
    if (!IsScenario(col))
        return false;
    const std::string title = m_columns[IndexOf(col)].title;
    if (m_user.Show({.text = LoadResString(kSureToDelete) + title + " ? ",
                     .icon = Icon::Question,
                     .buttons = Buttons::YesNoCancel}) != Answer::Yes)
        return false;
    m_data->ProjScens().Remove(title);
    Load(m_data);
    MarkChanged();
    m_window.Changed();
    return true;
}

float ScenarioSheet::Data(int col, int row) const
{
    return IsScenario(col) && IsPoint(row) ? static_cast<float>(ScenarioAt(col).Vector(RowOfTable(row)))
                                           : NoData();
}

std::string ScenarioSheet::ExactText(int col, int row) const
{
    if (!IsScenario(col) || !IsPoint(row))
        return Text(row, col);
    return std::to_string(ScenarioAt(col).Vector(RowOfTable(row)));
}

bool ScenarioSheet::MakeRoom(int col, int row)
{
    while (!IsScenario(col))
        if (!MoreScenarios())
            return false;
    while (!IsPoint(row))
        if (!MorePoints())
            return false;
    return true;
}

bool ScenarioSheet::StoreValue(int col, int row, const std::string& value)
{
    const auto kept = KeptValue(value);
    if (!kept || !MakeRoom(col, row))
        return false;
    ScenarioAt(col).Vector(RowOfTable(row), *kept);
    if (number_text::ParseTyped(value) != static_cast<double>(*kept))
        m_window.Note(Trim(value) + " is kept, and projected, as " + std::to_string(*kept) +
                      ": scenarios hold whole numbers.");
    MarkChanged();
    return true;
}

/// Taken out and added anew under its new title, so that it stands last at the next load. Deliberate.
void ScenarioSheet::Rename(int col, const std::string& title)
{
    clsProjScenario scenario = ScenarioAt(col);
    m_data->ProjScens().Remove(scenario.Title());
    scenario.Title(title);
    m_data->AddProjScenario(std::move(scenario), title);
    m_columns[IndexOf(col)].title = title;
}

bool ScenarioSheet::ValidTitle(int col, const std::string& title) const
{
    return title == m_columns[IndexOf(col)].title || (!title.empty() && !m_data->ProjScenario(title));
}

bool ScenarioSheet::StoreTitle(int col, const std::string& typed)
{
    const std::string title = KeptTitle(typed);
    if (!IsScenario(col) || !ValidTitle(col, title) || RefusalOfName(title))
        return false;
    if (title != Trim(typed))
        m_window.Note("A title keeps " + std::to_string(clsProjScenario::kTitleWidth) + " characters.");
    if (title == m_columns[IndexOf(col)].title)
        return true;
    Rename(col, title);
    MarkChanged();
    return true;
}

bool ScenarioSheet::EditData(int col, int row, std::string& value)
{
    value = Trim(value);
    m_window.Note({});
    if (row == kTitleRow)
        return StoreTitle(col, value);
    return row != kUnitRow && StoreValue(col, row, value); // units are chosen from a list
}

bool ScenarioSheet::IsValidData()
{
    const GridSelection edited = m_window.Edited();
    const std::string text = txtBox().Text();
    if (edited.row == kUnitRow)
        return true;
    if (edited.row == kTitleRow) {
        const auto refusal = RefusalOfName(text);
        if (!refusal && ValidTitle(edited.col, KeptTitle(text)))
            return true;
        m_user.Show({.text = refusal ? *refusal : LoadResString(kBadTitle)});
        return false;
    }
    if (KeptValue(text))
        return true;
    m_user.Show({.text = RefusalOfNumber(text, "scenarios hold whole numbers up to 2147483647.")});
    return false;
}

void ScenarioSheet::Change(const char*, const std::function<void()>& work)
{
    work();
    m_window.Changed();
}
