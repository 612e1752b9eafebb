// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/Reading.h"

#include <cstdint>
#include <string>
#include <string_view>

/// The inputs of a fit, as the user gives them; a further fit starts from those of the last.
struct FitInputs {
    std::int32_t FitOp = 1;
    float InitProp = 1.0F;    ///< stock at the start as a proportion of the unexploited one, 0 to 1
    float Mort = 0.2F;        ///< natural mortality per period
    float Z = 1.0F;           ///< Pella-Tomlinson shape
    std::int16_t TimeLag = 0; ///< periods
    bool SetStartingEstimates = false;
    bool PlotEvaluations = false;
};

/// What the Input Parameters dialog edits just before a fit.
struct InputParams : FitInputs {
    std::int32_t WhichMeth = 1;
    std::string modelTitle;    ///< for the window's title
    bool hasVariances = false; ///< the data set has a Var. Abund. Index column
};

/// What the dialog shows and enables for a model and a chosen error model.
struct InputFields {
    bool mort = false;
    bool initProp = false;
    bool lag = false;
    bool z = false;
    bool weightedEnabled = false; ///< "Least Squares (Weighted)" can be chosen
    bool viewMinShown = false;
    bool viewMinEnabled = false;
    bool setManEnabled = false;
};

/// True when the fit is a regression (models 1 to 3 under either least squares): nothing to start by hand,
/// nothing to watch.
bool UsesRegression(std::int32_t fitOp, std::int32_t whichMeth);

/// The state of the fields; a function of the record alone.
InputFields FieldsOf(const InputParams& params);

// The rules of the boxes.
Reading<float> ReadInitialProportion(std::string_view typed); ///< 0 to 1
Reading<float> ReadNaturalMortality(std::string_view typed);  ///< at least 0
Reading<float> ReadZShape(std::string_view typed);            ///< above 0
Reading<std::int16_t> ReadTimeLag(std::string_view typed);    ///< at least 0, rounded to a whole number
