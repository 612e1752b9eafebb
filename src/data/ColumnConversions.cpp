// SPDX-License-Identifier: GPL-3.0-or-later
// A user may bring catch in weight, in numbers or as an index, with or without mean weight. The models want
// catch, effort and total catch in one form; what can be derived is derived here.
#include "base/Checked.h"
#include "base/StringTable.h"
#include "data/clsVeltData.h"

#include <cmath>
#include <string>

namespace
{
using Series = clsVeltData::Series;
using Flags = clsVeltData::Flags;
constexpr float kMissing = clsVeltData::kMissing;
constexpr int kRows = clsVeltData::kRows;
constexpr int kGridTitles = 1844; // the title of column 1 is the next text

/// The table as the steps work on it, apart from the data set.
struct Table {
    Array1<Series, columns::kLast> db;
    Array1<bool, columns::kLast> present;

    bool Has(int column) const { return present(column); }
    bool HasBoth(int a, int b) const { return present(a) && present(b); }
};

float Times(float a, float b)
{
    return checked::ToFloat(double{a} * double{b});
}

float Over(float a, float b)
{
    return checked::ToFloat(checked::Div(a, b));
}

/// Marks `column` present and sets every row of it to derive(row). \throws VeltError what the arithmetic
/// raised, with the column and the row named.
template <typename Derive>
void Fill(Table& t, int column, const Derive& derive)
{
    t.present(column) = true;
    for (int row = 1; row <= kRows; ++row) {
        try {
            t.db(column)(row) = derive(row);
        } catch (const VeltError& error) {
            throw VeltError{error.number,
                            error.description + ": " + LoadResString(kGridTitles + column) + " of row " +
                                std::to_string(row) + " cannot be derived.",
                            "clsVeltDATA_DoColumnConversions"};
        }
    }
}

/// An index is a catch taken with one unit of effort; it replaces what stood in those two columns.
void IndexAsCatchRate(Table& t)
{
    using namespace columns;
    if (!t.Has(AbundIndex))
        return;
    const Series& index = t.db(AbundIndex);
    Fill(t, CatchWt, [&](int r) { return index(r); });
    Fill(t, Effort, [&](int r) { return index(r) == kMissing ? kMissing : 1.0F; });
}

void CatchInNumbers(Table& t)
{
    using namespace columns;
    const bool byWeight = t.HasBoth(CatchWt, MeanWt);
    if (!(byWeight || t.Has(TotCatchNums)) || !t.Has(Effort) || t.Has(CatchNums))
        return;
    if (byWeight) {
        // Deliberately without a look at missing values: two of them give 1.
        Fill(t, CatchNums, [&](int r) { return Over(t.db(CatchWt)(r), t.db(MeanWt)(r)); });
    } else {
        Fill(t, CatchNums,
             [&](int r) { return t.db(Effort)(r) != kMissing ? t.db(TotCatchNums)(r) : kMissing; });
    }
}

void CatchInWeight(Table& t)
{
    using namespace columns;
    const bool byNumbers = t.HasBoth(CatchNums, MeanWt);
    if (!(t.Has(TotCatchWt) || byNumbers) || t.Has(CatchWt))
        return;
    if (byNumbers)
        Fill(t, CatchWt, [&](int r) { return Times(t.db(MeanWt)(r), t.db(CatchNums)(r)); });
    else
        Fill(t, CatchWt, [&](int r) { return t.db(TotCatchWt)(r); });
}

void WeightOfCatchInNumbers(Table& t)
{
    using namespace columns;
    if (!t.Has(CatchNums) || t.Has(CatchWt))
        return;
    Fill(t, CatchWt, [&](int r) {
        const float numbers = t.db(CatchNums)(r);
        return numbers == kMissing ? kMissing : Times(t.db(MeanWt)(r), numbers);
    });
}

void NumbersOfCatchInWeight(Table& t)
{
    using namespace columns;
    if (!t.Has(CatchWt) || t.Has(CatchNums))
        return;
    Fill(t, CatchNums, [&](int r) {
        const float weight = t.db(CatchWt)(r);
        const float mean = t.db(MeanWt)(r);
        return weight != kMissing && mean != kMissing ? Over(weight, mean) : kMissing;
    });
}

void TotalCatchInWeight(Table& t)
{
    using namespace columns;
    if (!t.Has(TotCatchNums) || t.Has(TotCatchWt))
        return;
    // Deliberate: the total in numbers decides which rows count, the weight is that of CatchNums.
    Fill(t, TotCatchWt, [&](int r) {
        return t.db(TotCatchNums)(r) == kMissing ? kMissing : Times(t.db(MeanWt)(r), t.db(CatchNums)(r));
    });
}

void TotalCatchInNumbers(Table& t)
{
    using namespace columns;
    if (!t.Has(TotCatchWt) || t.Has(TotCatchNums))
        return;
    Fill(t, TotCatchNums, [&](int r) {
        const float weight = t.db(TotCatchWt)(r);
        return weight == kMissing ? kMissing : Over(weight, t.db(MeanWt)(r));
    });
}

/// The steps in their order; each sees what those before it made present.
void DeriveColumns(Table& t)
{
    IndexAsCatchRate(t);
    CatchInNumbers(t);
    CatchInWeight(t);
    if (!t.Has(columns::MeanWt))
        return;
    WeightOfCatchInNumbers(t);
    NumbersOfCatchInWeight(t);
    TotalCatchInWeight(t);
    TotalCatchInNumbers(t);
}

/// Rows with usable effort are included, also those with an effort of 0; the others leave the fit.
/// \return number of rows that stay toggled in
std::int32_t SelectRows(const Series& effort, Flags& included, Flags& toggledIn)
{
    std::int32_t rows = 0;
    for (int r = 1; r <= kRows; ++r) {
        included(r) = std::isfinite(effort(r)) && effort(r) >= 0.0F;
        toggledIn(r) = toggledIn(r) && included(r);
        rows += toggledIn(r) ? 1 : 0;
    }
    return rows;
}
} // namespace

void clsVeltData::DoColumnConversions()
{
    Table table{.db = m_db, .present = m_colPresent};
    DeriveColumns(table);
    m_db = table.db;
    m_colPresent = table.present;
    m_nntPoints = SelectRows(m_db(columns::Effort), m_included, m_toggledIn);
}
