// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/Checked.h"
#include "models/ModelState.h"

#include <cmath>
#include <cstddef>
#include <span>

/// What natural mortality M leaves of a stock.
struct Survival {
    double period = 1.0; ///< exp(-M), of the whole period
    double half = 1.0;   ///< exp(-M / 2), up to its middle, where the catch is taken (Pope 1972)

    static Survival Of(float mort)
    {
        return {std::exp(-static_cast<double>(mort)), std::exp(-static_cast<double>(mort) / 2.0)};
    }
    /// Both cut to 32 bits, as a trajectory uses them.
    static Survival In32Bits(float mort)
    {
        const Survival exact = Of(mort);
        return {static_cast<double>(checked::ToFloat(exact.period)),
                static_cast<double>(checked::ToFloat(exact.half))};
    }
};

/// One trajectory while it is computed: the series of a model as spans whose bounds were checked once.
/// Period p counts from 0; stock[p] stands at its start and stock[p + 1] behind it.
struct Trajectory {
    /// Starts with an empty sum and without underflow; `state` must outlive it.
    /// \throws VeltError 9 where a state behind the last period has no room
    explicit Trajectory(ModelState& state)
        : m(state), periods(static_cast<std::size_t>(state.LastState()) - 1),
          measured(static_cast<std::size_t>(state.data->OrigNAPoints())), effort(state.data->Effort().All()),
          included(state.data->Included().All()), toggledIn(state.data->ToggledIn().All()),
          totalCatch(state.ObsTCatchRef.All()), stock(state.Nt.All()), meanStock(state.MidPop.All()),
          expectedOverQ(state.EffMidPop.All())
    {
        m.PopUnderflow = false;
        m.EffMidPopSum = 0.0;
    }

    /// The total catch of period p is to be made from its effort.
    bool Projected(std::size_t p) const { return m.DIYTCatch && p >= measured; }

    /// The stock behind period p; one that is not above 0 has run out, and 0 stands for it.
    void StockBehind(std::size_t p, double left)
    {
        const float cut = checked::ToFloat(left);
        if (cut > 0.0F) {
            stock[p + 1] = cut;
            return;
        }
        m.PopUnderflow = true;
        stock[p + 1] = 0.0F;
    }

    /// X(p) = E(p) `mean`, the expected catch over q, of a period in the fit.
    void ExpectCatch(std::size_t p, double mean)
    {
        if (!toggledIn[p])
            return;
        expectedOverQ[p] = mean * effort[p];
        m.EffMidPopSum += expectedOverQ[p];
    }

    ModelState& m;
    const std::size_t periods;
    const std::size_t measured; ///< periods with data, before a projection lengthened the table
    const std::span<const float> effort;
    const std::span<const bool> included;
    const std::span<const bool> toggledIn;
    const std::span<float> totalCatch;
    const std::span<float> stock;
    const std::span<float> meanStock;
    const std::span<double> expectedOverQ;
};
