// SPDX-License-Identifier: GPL-3.0-or-later
#include "data/clsVeltData.h"

#include "base/Checked.h"
#include "base/Text.h"
#include "data/ColumnConversions.h"
#include "data/StructuralEditing.h"

#include <algorithm>

clsVeltData::clsVeltData(Run& run) : m_run(run) {}

float clsVeltData::DB(int column, int row) const
{
    if (column < columns::kFirst || column > columns::kLast)
        return 0.0F; // deliberate: an unknown column is no failure here
    return m_table.db(column)(row);
}

void clsVeltData::DB(int column, int row, float value)
{
    if (column < columns::kFirst || column > columns::kLast)
        return;
    m_table.db(column)(row) = value;
    m_isDirty = true;
}

const clsVeltData::Series& clsVeltData::Column(int column) const
{
    return m_table.db(column);
}

std::string clsVeltData::ColFormat(int column) const
{
    return Trim(m_table.format(column));
}

void clsVeltData::ColFormat(int column, const std::string& format)
{
    Set(m_table.format(column), PadString(format, kFormatWidth));
}

std::int16_t clsVeltData::NumDPs(int row) const
{
    return checked::ToInt16(m_table.numDPs(row));
}

void clsVeltData::NumDPs(int row, std::int16_t value)
{
    Set(m_table.numDPs(row), std::int32_t{value});
}

void clsVeltData::DecPlaces(int column, std::int32_t value)
{
    Set(m_table.decPlaces(column), value);
}

void clsVeltData::Reset()
{
    for (int column = columns::kFirst; column <= columns::kLast; ++column) {
        if (DBSysOnly(column))
            m_table.present(column) = false;
    }
}

void clsVeltData::ClearSystemColumn(int column)
{
    m_table.present(column) = false;
    m_table.db(column).Fill(0.0F);
}

bool clsVeltData::CheckRqCols(std::span<const int> wanted) const
{
    return !wanted.empty() &&
           std::all_of(wanted.begin(), wanted.end(), [this](int column) { return m_table.present(column); });
}

void clsVeltData::DoColumnConversions()
{
    DataTable converted = m_table; // aside: a conversion that fails changes nothing
    ConvertColumns(converted);
    m_table = std::move(converted);
}

void clsVeltData::ShiftData(std::int16_t amount, std::int16_t start)
{
    ::ShiftData(m_table, amount, start);
    m_isDirty = m_isDirty || amount != 0;
}

void clsVeltData::EmptyData(std::int16_t first, std::int16_t last)
{
    ::EmptyData(m_table, first, last);
    m_isDirty = m_isDirty || first <= last;
}

void clsVeltData::AddColumn(int column)
{
    ::AddColumn(m_table, column);
    m_isDirty = true;
}

void clsVeltData::EraseColumn(int column)
{
    ::EraseColumn(m_table, column);
    m_isDirty = true;
}

void clsVeltData::InsertRows(int top, int count)
{
    ::InsertRows(m_table, top, count);
    m_isDirty = true;
}

void clsVeltData::DeleteRows(int top, int count)
{
    ::DeleteRows(m_table, top, count);
    m_isDirty = true;
}

void clsVeltData::AddRows(int count)
{
    ::AddRows(m_table, count);
    m_isDirty = true;
}

void clsVeltData::AddProjScenario(clsProjScenario scenario, std::string_view key)
{
    m_projScens.Add(std::move(scenario), key);
    m_isDirty = m_isDirty || m_logOrReload;
}

void clsVeltData::AddLoggedFit(clsFit fit)
{
    const std::string name = fit.FitName();
    m_loggedFits.Add(std::move(fit), name);
    m_isDirty = m_isDirty || m_logOrReload;
}

void clsVeltData::DeleteLoggedFit(std::string_view name)
{
    m_loggedFits.Remove(name);
    m_isDirty = true;
}

clsFit& clsVeltData::NewLoggedFit(std::int32_t whichMeth, std::int32_t fitOp, const std::string& name,
                                  double now)
{
    clsFit fit;
    fit.Create(name, now);
    fit.MethType(whichMeth);
    fit.FitOp(fitOp);
    clsFit& logged = m_loggedFits.Add(std::move(fit), name);
    m_isDirty = true;
    return logged;
}
