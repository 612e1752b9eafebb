// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "fit/clsMethManager.h"
#include "support/TableBuilder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <new>
#include <stdexcept>
#include <string>
#include <utility>

/// A session at the screen: a data set, the manager, and a user who says yes to the inputs.
class Manager : public ::testing::Test, public Bench
{
protected:
    Manager()
    {
        user.onInputParams = [this](InputParams& params) {
            offered = params;
            if (change)
                change(params);
            return true;
        };
    }

    void On(const TableBuilder& table)
    {
        data = table.Build(run);
        manager.Create(data);
    }

    /// A stock of about 1000 that only dies (0.2 a period) and is caught.
    static TableBuilder Depletion()
    {
        return TableBuilder()
            .Effort({10, 12, 9, 11, 13, 10, 12})
            .Catch({169, 124, 66, 51, 42, 20, 16})
            .Recruits({1, 2, 1, 3, 1, 2, 1});
    }

    /// More catch a unit of effort from period to period, which no closed stock gives.
    static TableBuilder Rising()
    {
        return TableBuilder().Effort({10, 10, 10, 10, 10}).Catch({10, 21, 29, 41, 50});
    }

    /// Four periods with the columns of every model.
    static TableBuilder Depletion4()
    {
        return TableBuilder()
            .Effort({10, 12, 9, 11})
            .Catch({169, 124, 66, 51})
            .Recruits({1, 2, 1, 3})
            .Yield({169, 124, 66, 51});
    }

    static TableBuilder Fishery()
    {
        return TableBuilder()
            .From(1970)
            .Effort({100, 160, 220, 280, 340, 300, 200, 60, 40, 50, 120, 180})
            .Yield({560, 810, 985, 1100, 1160, 905, 590, 190, 135, 178, 430, 610});
    }

    void Fit(const std::string& model, std::function<void(InputParams&)> changes = {})
    {
        user.Picks(model);
        change = std::move(changes);
        manager.FitNewModel(false);
    }

    bool Asked(const std::string& what) const
    {
        return std::find(user.asked.begin(), user.asked.end(), what) != user.asked.end();
    }

    void ExpectNoFit()
    {
        EXPECT_FALSE(manager.MethDefined());
        EXPECT_FALSE(manager.IsBSDone());
        EXPECT_FALSE(window.reportShown);
        EXPECT_FALSE(window.hourglass);
    }

    clsVeltData data{run};
    clsMethManager manager{run};
    InputParams offered;
    std::function<void(InputParams&)> change;
};

/// Failures that are none of the program's own, and what is told of them.
inline const std::pair<std::function<void()>, std::string> kForeignFailures[] = {
    {[] { throw std::bad_alloc(); }, "Out of memory"},
    {[] { throw std::runtime_error("the disc is upside down"); }, "the disc is upside down"},
};
