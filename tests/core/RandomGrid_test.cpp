// SPDX-License-Identifier: GPL-3.0-or-later
// Random sessions at the grid beside a plain array that does the same: afterwards the grid, the data set and
// the array agree, after every single step and to the bit.
#include "data/NumberFormat.h"
#include "data/StructuralEditing.h"
#include "support/SheetBench.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <random>
#include <vector>

using namespace grid_keys;

namespace
{
constexpr int kSequences = 10'000;
constexpr int kSteps = 12;
constexpr float kMissing = -1.0F;

/// What a table is when one forgets all windows: columns by number, each with its rows.
struct PlainArray {
    struct Column {
        int number = 0;
        std::vector<float> values;
        bool operator==(const Column&) const = default;
    };
    std::vector<Column> columns;
    int rows = 0;
    bool operator==(const PlainArray&) const = default;

    float& At(int row, int col)
    {
        return columns[static_cast<std::size_t>(col - 2)].values[static_cast<std::size_t>(row - 1)];
    }
    void Resize()
    {
        for (Column& column : columns)
            column.values.resize(static_cast<std::size_t>(rows), kMissing);
    }
    int Cols() const { return static_cast<int>(columns.size()) + 2; }
};

class Session
{
public:
    explicit Session(std::uint32_t seed)
        : m_random(seed), m_bench(Below(12), {columns::TotCatchWt, columns::Effort, columns::AbundIndex})
    {
        m_array.columns = {{columns::TotCatchWt, {}}, {columns::Effort, {}}, {columns::AbundIndex, {}}};
        m_array.rows = m_bench.data.ShownRows();
        m_array.Resize();
    }

    void Step()
    {
        MoveAbout();
        switch (Below(11)) {
        case 0:
        case 1:
            return TypeAndEnd();
        case 2:
            return TypeAndClickElsewhere();
        case 3:
            return CopyAndPaste();
        case 4:
            return PasteABlock();
        case 5:
            return PasteOneValue();
        case 6:
            return Clear();
        case 7:
            return RowsComeAndGo();
        case 8:
            return ColumnsComeAndGo();
        case 9:
            return Format();
        default:
            return TakeBack();
        }
    }

    /// What differs between the three; empty when nothing does.
    std::string Difference()
    {
        TableSheet& sheet = m_bench.sheet;
        if (sheet.Rows() != m_array.rows + 1 || sheet.Cols() != m_array.Cols())
            return "size after " + m_last;
        if (m_bench.box.visible)
            return "box open after " + m_last;
        for (int col = 2; col < m_array.Cols(); ++col) {
            const int column = m_array.columns[static_cast<std::size_t>(col - 2)].number;
            if (sheet.DataColOf(col) != column || !m_bench.data.ColPresent(column))
                return "place of column " + std::to_string(column) + " after " + m_last;
            for (int row = 1; row <= m_array.rows; ++row) {
                const float expected = m_array.At(row, col);
                if (m_bench.data.DB(column, row) != expected)
                    return "value " + std::to_string(row) + "," + std::to_string(col) + " after " + m_last;
                if (m_bench.grid.TextMatrix(row, col) !=
                    FormatNumber(expected, m_bench.data.ColFormat(column)))
                    return "text " + std::to_string(row) + "," + std::to_string(col) + " after " + m_last;
            }
        }
        return {};
    }

private:
    int Below(int n) { return n <= 0 ? 0 : static_cast<int>(m_random() % static_cast<unsigned>(n)); }
    bool NoCells() const { return m_array.rows == 0 || m_array.columns.empty(); }

    struct Entry {
        std::string text;
        float value = 0.0F; ///< as a cell keeps it
    };
    /// A number that a 32-bit float may not hold exactly, as a person writes it.
    Entry Number()
    {
        const double whole = Below(200000) - 50000;
        const double number = whole / 8.0; // exact in 32 bits, so that the text needs no rounding rule
        char text[40];
        std::snprintf(text, sizeof text, "%.3f", number);
        const float stored = static_cast<float>(number);
        return {text, stored < -1.0F ? kMissing : stored};
    }

    void MoveAbout()
    {
        const int row = 1 + Below(m_array.rows);
        const int col = 2 + Below(static_cast<int>(m_array.columns.size()));
        const int toRow = Below(2) == 0 ? row : 1 + Below(m_array.rows);
        const int toCol = Below(2) == 0 ? col : 2 + Below(static_cast<int>(m_array.columns.size()));
        m_bench.Mark(row, col, toRow, toCol);
    }

    /// Remembers the array as it was, when a step changed it: that is what Undo brings back.
    void Remember(const PlainArray& before)
    {
        if (!(before == m_array))
            m_undo.push_back(before);
    }

    void TypeAndEnd()
    {
        m_last = "typing";
        if (NoCells())
            return;
        const GridSelection at = m_bench.grid.selected;
        const Entry entry = Number();
        const int way = Below(7);
        m_bench.Type(entry.text);
        const PlainArray before = m_array;
        if (way == 6) {
            m_bench.Press(kEscape);
        } else {
            static constexpr int kKeys[] = {kEnter, kUp, kDown, kTab, kTab, kEnter};
            if (way == 5) {
                m_bench.EmptyBox();
                m_array.At(at.row, at.col) = kMissing;
            } else {
                m_array.At(at.row, at.col) = entry.value;
            }
            m_bench.Press(kKeys[way], way == 4 ? kShift : 0);
        }
        Remember(before);
    }

    void TypeAndClickElsewhere()
    {
        m_last = "typing and a click";
        if (NoCells())
            return;
        const GridSelection at = m_bench.grid.selected;
        const Entry entry = Number();
        const PlainArray before = m_array;
        m_bench.Type(entry.text);
        m_bench.Click(1 + Below(m_array.rows), 2 + Below(static_cast<int>(m_array.columns.size())));
        m_array.At(at.row, at.col) = entry.value;
        Remember(before);
    }

    void CopyAndPaste()
    {
        m_last = "copy or cut, and paste";
        if (NoCells())
            return;
        const GridSelection from = m_bench.grid.selected;
        const bool cut = Below(2) == 0;
        PlainArray before = m_array;
        std::vector<std::vector<float>> block;
        for (int row = from.Top(); row <= from.Bottom(); ++row) {
            block.emplace_back();
            for (int col = from.Left(); col <= from.Right(); ++col) {
                block.back().push_back(m_array.At(row, col));
                if (cut)
                    m_array.At(row, col) = kMissing;
            }
        }
        if (cut)
            m_bench.control.CutClick();
        else
            m_bench.control.CopyClick();
        Remember(before);
        MoveAbout();
        before = m_array;
        m_bench.user.answers.clear(); // what does not fit is dropped: the answer is Yes
        m_bench.control.PasteClick();
        const GridSelection to = m_bench.grid.selected;
        if (block.size() == 1 && block.front().size() == 1)
            Fill(to, block.front().front());
        else
            Place(to.row, to.col, block);
        Remember(before);
    }

    void PasteABlock()
    {
        m_last = "paste of a block";
        if (NoCells())
            return;
        const PlainArray before = m_array;
        const GridSelection to = m_bench.grid.selected;
        std::vector<std::vector<float>> block(static_cast<std::size_t>(2 + Below(3)));
        std::string text;
        for (auto& row : block) {
            const int cells = 1 + Below(4);
            for (int i = 0; i < cells; ++i) {
                const Entry entry = Number();
                row.push_back(entry.value);
                text += entry.text + (i + 1 < cells ? "\t" : Below(2) == 0 ? "\r\n" : "\n");
            }
        }
        m_bench.Paste(text);
        Place(to.row, to.col, block);
        Remember(before);
    }

    void PasteOneValue()
    {
        m_last = "paste of one value";
        if (NoCells())
            return;
        const PlainArray before = m_array;
        const Entry entry = Number();
        const bool refused = Below(4) == 0;
        m_bench.Paste(entry.text + (refused ? "" : "\n"));
        if (!refused)
            Fill(m_bench.grid.selected, entry.value);
        Remember(before);
    }

    void Clear()
    {
        m_last = "Delete";
        if (NoCells())
            return;
        const PlainArray before = m_array;
        m_bench.control.ClearClick();
        Fill(m_bench.grid.selected, kMissing);
        Remember(before);
    }

    void RowsComeAndGo()
    {
        m_last = "rows";
        const PlainArray before = m_array;
        const GridSelection at = m_bench.grid.selected;
        const int top = std::max(1, at.Top());
        const int count = at.Bottom() - at.Top() + 1;
        const auto move = [&](auto work) { m_bench.sheet.Change("rows", work); };
        const int what = m_array.rows == 0 ? 0 : Below(3);
        if (what == 0) {
            move([&] { m_bench.data.AddRows(count); });
            m_array.rows += count;
        } else if (what == 1) {
            move([&] { m_bench.data.InsertRows(top, count); });
            for (auto& column : m_array.columns)
                column.values.insert(column.values.begin() + (top - 1), static_cast<std::size_t>(count),
                                     kMissing);
            m_array.rows += count;
        } else {
            move([&] { m_bench.data.DeleteRows(top, count); });
            for (auto& column : m_array.columns)
                column.values.erase(column.values.begin() + (top - 1),
                                    column.values.begin() + (top - 1 + count));
            m_array.rows -= count;
        }
        m_array.Resize();
        Remember(before);
    }

    void ColumnsComeAndGo()
    {
        m_last = "columns";
        const PlainArray before = m_array;
        const int number = 1 + Below(columns::kLastUser);
        const auto at = std::find_if(m_array.columns.begin(), m_array.columns.end(),
                                     [&](const auto& column) { return column.number >= number; });
        if (at != m_array.columns.end() && at->number == number) {
            if (m_array.columns.size() == 1)
                return; // the last one stays
            m_bench.sheet.Change("columns", [&] { m_bench.data.EraseColumn(number); });
            m_array.columns.erase(at);
        } else {
            m_bench.sheet.Change("columns", [&] { m_bench.data.AddColumn(number); });
            m_array.columns.insert(at, {number, {}});
        }
        m_array.Resize();
        Remember(before);
    }

    void Format()
    {
        m_last = "format";
        if (NoCells())
            return;
        const TableSheet::State before = m_bench.sheet.Now();
        m_bench.user.onNumberFormat = [&](NumberFormatChoice& choice) {
            choice.category = static_cast<NumberCategory>(1 + Below(3));
            choice.decPlaces = Below(16);
            return true;
        };
        m_bench.control.FormatNumber();
        if (m_bench.sheet.Now() != before)
            m_undo.push_back(m_array); // a step of its own, although no value changed
    }

    void TakeBack()
    {
        m_last = "undo";
        ASSERT_EQ(m_undo.size(), m_bench.changes.size());
        if (m_undo.empty())
            return;
        m_bench.TakeBack();
        m_array = m_undo.back();
        m_undo.pop_back();
    }

    void Fill(const GridSelection& cells, float value)
    {
        for (int row = cells.Top(); row <= cells.Bottom(); ++row)
            for (int col = cells.Left(); col <= cells.Right(); ++col)
                m_array.At(row, col) = value;
    }

    void Place(int top, int left, const std::vector<std::vector<float>>& block)
    {
        for (std::size_t i = 0; i < block.size(); ++i)
            for (std::size_t j = 0; j < block[i].size(); ++j) {
                const int row = top + static_cast<int>(i);
                const int col = left + static_cast<int>(j);
                if (row <= m_array.rows && col < m_array.Cols())
                    m_array.At(row, col) = block[i][j];
            }
    }

    std::mt19937 m_random;
    SheetBench m_bench;
    PlainArray m_array;
    std::vector<PlainArray> m_undo;
    std::string m_last;
};
} // namespace

TEST(RandomGrid, TenThousandRandomSequencesLeaveGridDataSetAndArrayInAgreement)
{
    for (int sequence = 0; sequence < kSequences; ++sequence) {
        Session session(static_cast<std::uint32_t>(sequence));
        for (int step = 0; step < kSteps; ++step) {
            session.Step();
            ASSERT_EQ(session.Difference(), "") << "sequence " << sequence << ", step " << step;
        }
    }
}
