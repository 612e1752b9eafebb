// SPDX-License-Identifier: GPL-3.0-or-later
#include "fit/InputParams.h"

#include "base/FieldRules.h"
#include "base/StringTable.h"
#include "models/IMethod.h"
#include "models/ModelTable.h"

bool UsesRegression(std::int32_t fitOp, std::int32_t whichMeth)
{
    return model_table::Of(whichMeth).regression && fit_op::IsLeastSquares(fitOp);
}

InputFields FieldsOf(const InputParams& params)
{
    const model_table::Model& model = model_table::Of(params.WhichMeth);
    const bool searches = !UsesRegression(params.FitOp, params.WhichMeth);
    InputFields fields;
    fields.mort = model.Asks(model_table::Input::Mort);
    fields.initProp = model.Asks(model_table::Input::InitDep);
    fields.lag = model.Asks(model_table::Input::Lag);
    fields.z = model.Asks(model_table::Input::Z);
    fields.weightedEnabled = params.hasVariances;
    // Only a search over two parameters can be drawn as a surface.
    fields.viewMinShown = model.searched.size() == 2;
    fields.viewMinEnabled = fields.viewMinShown && searches;
    fields.setManEnabled = searches;
    return fields;
}

Reading<float> ReadInitialProportion(std::string_view typed)
{
    return field_rules::ReadFloat(
        typed, [](double value) { return value >= 0.0 && value <= 1.0; }, LoadResString(1917));
}

Reading<float> ReadNaturalMortality(std::string_view typed)
{
    return field_rules::ReadFloat(
        typed, [](double value) { return value >= 0.0; }, LoadResString(1916));
}

Reading<float> ReadZShape(std::string_view typed)
{
    return field_rules::ReadFloat(
        typed, [](double value) { return value > 0.0; }, LoadResString(1915));
}

Reading<std::int16_t> ReadTimeLag(std::string_view typed)
{
    return field_rules::ReadInt16(
        typed, [](double value) { return value >= 0.0; }, LoadResString(1914));
}
