// SPDX-License-Identifier: GPL-3.0-or-later
#include "data/TableSheet.h"

#include "base/Checked.h"
#include "base/NumberText.h"
#include "base/StringTable.h"
#include "data/GridTitle.h"
#include "data/NumberFormat.h"
#include "data/TypedNumber.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <optional>

namespace
{
constexpr int kTimeTitle = 1877;
constexpr int kIncludeTitle = 1878;

/// The number as a cell stores it; nothing for what is none, or does not fit.
std::optional<float> CellValue(const std::string& text)
{
    return TypedNumber(text, checked::ToFloat);
}

std::uint32_t BitsOf(float value)
{
    return std::bit_cast<std::uint32_t>(value);
}

bool SameBits(const DataTable& a, const DataTable& b)
{
    for (int column = columns::kFirst; column <= columns::kLast; ++column)
        if (!std::ranges::equal(a.db(column), b.db(column), {}, BitsOf, BitsOf))
            return false;
    return true;
}

DataTable WithoutValues(DataTable table)
{
    table.db.Fill(DataTable::Series());
    return table;
}
} // namespace

bool TableSheet::State::operator==(const State& other) const
{
    return SameBits(table, other.table) && WithoutValues(table) == WithoutValues(other.table) &&
           description == other.description && fonts == other.fonts;
}

void TableSheet::Take(clsVeltData* data)
{
    m_data = data;
    m_fonts.Fill({});
    Arrange();
}

void TableSheet::Arrange()
{
    m_dataColOf.clear();
    m_gridColOf.fill(0);
    for (int column = columns::kFirst; m_data && column <= columns::kLast; ++column) {
        if (!m_data->ColPresent(column))
            continue;
        m_gridColOf[static_cast<std::size_t>(column)] = Cols();
        m_dataColOf.push_back(column);
    }
}

int TableSheet::Rows() const
{
    return FirstDataRow + (m_data ? m_data->ShownRows() : 0);
}

int TableSheet::DataColOf(int col) const
{
    return col < FirstDataCol ? 0 : m_dataColOf.at(static_cast<std::size_t>(col - FirstDataCol));
}

std::string TableSheet::Title(int col) const
{
    if (col < FirstDataCol)
        return LoadResString(col == kTimeColumn ? kTimeTitle : kIncludeTitle);
    return GridTitle(DataColOf(col));
}

std::string TableSheet::Text(int row, int col) const
{
    if (col == kTimeColumn)
        return std::to_string(std::int64_t{m_data->MinTimeP()} - 1 + row);
    return col == kIncludeColumn ? std::string() : FormatNumber(Data(col, row), FormatString(col));
}

TableSheet::State TableSheet::Now() const
{
    return {m_data->Table(), m_data->DSDesc(), m_fonts};
}

void TableSheet::BringBack(const State& state)
{
    m_data->Table(state.table);
    m_data->DSDesc(state.description); // which marks the data set as changed
    m_fonts = state.fonts;
    Arrange();
}

float TableSheet::Data(int col, int row) const
{
    return m_data->DB(DataColOf(col), row - FirstDataRow + 1);
}

std::string TableSheet::ExactText(int col, int row) const
{
    return number_text::Shortest(Data(col, row));
}

bool TableSheet::EditData(int col, int row, std::string& value)
{
    const auto number = CellValue(value);
    if (!number)
        return false;
    const float stored = *number < clsVeltData::kMissing ? clsVeltData::kMissing : *number;
    if (stored != *number)
        value = number_text::Plain(stored);
    m_data->DB(DataColOf(col), row - FirstDataRow + 1, stored);
    return true;
}

void TableSheet::ChangeOfNumberFormat(int col, int, const std::string& format)
{
    m_data->ColFormat(DataColOf(col), format);
}

CellFont TableSheet::TextFormat(int col) const
{
    return m_fonts(DataColOf(col));
}

void TableSheet::ChangeOfTextFormat(int col, int, const CellFont& font)
{
    m_fonts(DataColOf(col)) = font;
}

bool TableSheet::IsValidData()
{
    const std::string text = txtBox().Text();
    if (CellValue(text))
        return true;
    m_user.Show({.text = RefusalOfNumber(text, "a cell holds numbers up to 3.4E+38.")});
    return false;
}

void TableSheet::Change(const char* what, const std::function<void()>& work)
{
    const State before = Now();
    work();
    Arrange();
    if (Now() != before)
        m_window.Changed(what, before);
}
