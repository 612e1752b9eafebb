// SPDX-License-Identifier: GPL-3.0-or-later
// A user may bring catch in weight, in numbers or as an index, with or without mean weight. The models want
// catch, effort and total catch in one form; what can be derived is derived here.
#include "data/ColumnConversions.h"

#include "base/Checked.h"
#include "data/GridTitle.h"

#include <cmath>
#include <string>

namespace
{
using Series = DataTable::Series;
constexpr float kMissing = DataTable::kMissing;

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
void Fill(DataTable& t, int column, const Derive& derive)
{
    t.present(column) = true;
    for (int row = 1; row <= DataTable::kRows; ++row) {
        try {
            t.db(column)(row) = derive(row);
        } catch (const VeltError& error) {
            throw VeltError{error.number,
                            error.description + ": " + GridTitle(column) + " of row " + std::to_string(row) +
                                " cannot be derived.",
                            "clsVeltDATA_DoColumnConversions"};
        }
    }
    t.FormatFilled(column);
}

/// An index is a catch taken with one unit of effort; it replaces what stood in those two columns.
void IndexAsCatchRate(DataTable& t)
{
    using namespace columns;
    if (!t.present(AbundIndex))
        return;
    const Series& index = t.db(AbundIndex);
    Fill(t, CatchWt, [&](int r) { return index(r); });
    Fill(t, Effort, [&](int r) { return index(r) == kMissing ? kMissing : 1.0F; });
}

void CatchInNumbers(DataTable& t)
{
    using namespace columns;
    const bool byWeight = t.present(CatchWt) && t.present(MeanWt);
    if (!(byWeight || t.present(TotCatchNums)) || !t.present(Effort) || t.present(CatchNums))
        return;
    if (byWeight) {
        // Deliberately without a look at missing values: two of them give 1.
        Fill(t, CatchNums, [&](int r) { return Over(t.db(CatchWt)(r), t.db(MeanWt)(r)); });
    } else {
        Fill(t, CatchNums,
             [&](int r) { return t.db(Effort)(r) != kMissing ? t.db(TotCatchNums)(r) : kMissing; });
    }
}

void CatchInWeight(DataTable& t)
{
    using namespace columns;
    const bool byNumbers = t.present(CatchNums) && t.present(MeanWt);
    if (!(t.present(TotCatchWt) || byNumbers) || t.present(CatchWt))
        return;
    if (byNumbers)
        Fill(t, CatchWt, [&](int r) { return Times(t.db(MeanWt)(r), t.db(CatchNums)(r)); });
    else
        Fill(t, CatchWt, [&](int r) { return t.db(TotCatchWt)(r); });
}

void WeightOfCatchInNumbers(DataTable& t)
{
    using namespace columns;
    if (!t.present(CatchNums) || t.present(CatchWt))
        return;
    Fill(t, CatchWt, [&](int r) {
        const float numbers = t.db(CatchNums)(r);
        return numbers == kMissing ? kMissing : Times(t.db(MeanWt)(r), numbers);
    });
}

void NumbersOfCatchInWeight(DataTable& t)
{
    using namespace columns;
    if (!t.present(CatchWt) || t.present(CatchNums))
        return;
    Fill(t, CatchNums, [&](int r) {
        const float weight = t.db(CatchWt)(r);
        const float mean = t.db(MeanWt)(r);
        return weight != kMissing && mean != kMissing ? Over(weight, mean) : kMissing;
    });
}

void TotalCatchInWeight(DataTable& t)
{
    using namespace columns;
    if (!t.present(TotCatchNums) || t.present(TotCatchWt))
        return;
    // Deliberate: the total in numbers decides which rows count, the weight is that of CatchNums.
    Fill(t, TotCatchWt, [&](int r) {
        return t.db(TotCatchNums)(r) == kMissing ? kMissing : Times(t.db(MeanWt)(r), t.db(CatchNums)(r));
    });
}

void TotalCatchInNumbers(DataTable& t)
{
    using namespace columns;
    if (!t.present(TotCatchWt) || t.present(TotCatchNums))
        return;
    Fill(t, TotCatchNums, [&](int r) {
        const float weight = t.db(TotCatchWt)(r);
        return weight == kMissing ? kMissing : Over(weight, t.db(MeanWt)(r));
    });
}

/// The steps in their order; each sees what those before it made present.
void DeriveColumns(DataTable& t)
{
    IndexAsCatchRate(t);
    CatchInNumbers(t);
    CatchInWeight(t);
    if (!t.present(columns::MeanWt))
        return;
    WeightOfCatchInNumbers(t);
    NumbersOfCatchInWeight(t);
    TotalCatchInWeight(t);
    TotalCatchInNumbers(t);
}

/// Rows with usable effort are included, also those with an effort of 0; the others leave the fit.
void SelectRows(DataTable& t)
{
    t.nntPoints = 0;
    for (int r = 1; r <= DataTable::kRows; ++r) {
        const float effort = t.db(columns::Effort)(r);
        t.Include(r, std::isfinite(effort) && effort >= 0.0F);
        t.nntPoints += t.toggledIn(r) ? 1 : 0;
    }
}
} // namespace

void ConvertColumns(DataTable& table)
{
    DeriveColumns(table);
    SelectRows(table);
}
