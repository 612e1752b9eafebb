// SPDX-License-Identifier: GPL-3.0-or-later
// A model as the body of a logged fit: its record, the data set as it stands with it, and its replicates.
#include "base/Checked.h"
#include "data/ProjectData.h"
#include "models/DepletionMethod.h"
#include "models/clsProduction.h"
#include "models/clsRecruitINdex.h"

using model_table::Quantity;
using project_file::Body;
using project_file::kDouble;
using project_file::kEmpty;
using project_file::kInt32;
using project_file::ModelRecord;
using project_file::TaggedArray;
using project_file::TaggedNumber;

namespace
{
/// The estimates in the order of the record: those of the report that are not derived, then the dispersion.
template <typename Visit>
void ForEachStored(const model_table::Model& model, Visit visit)
{
    std::size_t place = 0;
    for (const Quantity quantity : model.estimates)
        if (!model_table::IsDerived(quantity))
            visit(place++, [quantity](auto& estimates) -> decltype(auto) { return estimates[quantity]; });
    visit(
        place, [](auto& estimates) -> auto& { return estimates.Var; });
}
} // namespace

Body MethodCommon::SaveAsVELT3() const
{
    Body body;
    ModelRecord& record = body.model;
    ForEachStored(m.Table(),
                  [&](std::size_t place, auto value) { record.FinalEsts.at(place) = value(m.FinalEsts); });
    record.InitDep = m.InitDep;
    record.Mort = m.Mort;
    record.LAG = m.LAG;
    record.RSqr = m.RSqr;
    record.Z = StoredZ();
    record.IsBSDone = m.IsBSDone;
    record.GammaBeta = m.GammaBeta;
    record.GammaNu = m.GammaNu;
    record.FitOp = m.FitOp;
    record.QValue = m.QValue;
    record.unnamed12 = m_stored.unnamed12;
    record.Fixed1 = m.Fixed1;
    record.Fixed2 = m.Fixed2;
    record.unnamed15 = m_stored.unnamed15;
    record.PlotEvaluations = m.PlotEvaluations;
    record.SetStartingEsts = m.SetStartingEsts;
    record.StartEstKind = m.StartEstKind;
    record.UsingNosFlag = m.UsingNosFlag;
    record.StartEstKind2 = m.StartEstKind2;
    record.NumBootStraps = m.NumBootStraps;
    record.ResidVec = m.ResidVec;
    record.weights = m_stored.weights ? m_stored.weights : StoredWeights();
    record.FittedVec = m.FittedVec;
    record.times = m_stored.times ? m_stored.times : StoredTimes();
    record.unnamed26 = m_stored.unnamed26;
    body.data = DataRecordOf(*m.data, true);
    for (int parameter = 1; parameter <= bs_param::kCount; ++parameter)
        for (int n = 1; n <= clsBootStrap::kMaxReplicates; ++n)
            body.bootStraps.push_back(m_boot.BS(parameter, n));
    return body;
}

void MethodCommon::OpenAsVELT3(const Body& body)
{
    const ModelRecord& record = body.model;
    if (record.FitOp < fit_op::kLeastSquares || record.FitOp > fit_op::kWeightedLeastSquares)
        throw ProgramError(errors::kReadObj,
                           "ReadObj Failure.\nThe error model " + std::to_string(record.FitOp) +
                               " is none that this program knows.",
                           "ReadObj");
    TakeDataOfFit(*m.data, body.data);
    ForEachStored(m.Table(),
                  [&](std::size_t place, auto value) { value(m.FinalEsts) = record.FinalEsts.at(place); });
    m.InitEsts = m.WorkEsts = m.FinalEsts;
    m.InitDep = record.InitDep;
    m.Mort = record.Mort;
    m.LAG = record.LAG;
    m.RSqr = record.RSqr;
    TakeStoredZ(record.Z);
    m.IsBSDone = record.IsBSDone;
    m.GammaBeta = record.GammaBeta;
    m.GammaNu = m.HomeNu = record.GammaNu;
    m.FitOp = record.FitOp;
    m.QValue = record.QValue;
    m.Fixed1 = record.Fixed1;
    m.Fixed2 = record.Fixed2;
    m.PlotEvaluations = record.PlotEvaluations;
    m.SetStartingEsts = record.SetStartingEsts;
    m.StartEstKind = record.StartEstKind;
    m.UsingNosFlag = !models::IsProduction(m.WhichMeth); // whatever stands there, the class decides
    m.StartEstKind2 = record.StartEstKind2;
    m.NumBootStraps = record.NumBootStraps;
    m.ResidVec = record.ResidVec;
    m.FittedVec = record.FittedVec;
    m.MinPop = 0.0F;
    m_stored = {.Z = record.Z,
                .unnamed12 = record.unnamed12,
                .unnamed15 = record.unnamed15,
                .unnamed26 = record.unnamed26,
                .weights = record.weights,
                .times = record.times};
    TakeReplicates(body.bootStraps);
    SetColumnRefs();
    CalcDiscCatches();
    PrepareReloaded();
}

void MethodCommon::TakeReplicates(const project_file::BootStrapRecord& replicates)
{
    m_boot = clsBootStrap();
    std::size_t at = 0;
    for (int parameter = 1; parameter <= bs_param::kCount; ++parameter)
        for (int n = 1; n <= clsBootStrap::kMaxReplicates; ++n)
            if (const auto& estimate = replicates.at(at++))
                m_boot.BS(parameter, n, *estimate);
    for (int parameter = 1; parameter <= bs_param::kCount; ++parameter)
        m_boot.SortBS(parameter);
}

/// Labels of the periods for which `has` says so.
TaggedArray MethodCommon::TimeLabels(const std::function<bool(int i)>& has) const
{
    TaggedArray labels(static_cast<std::size_t>(m.NAPoints()));
    for (int i = 1; i <= m.NAPoints(); ++i)
        if (has(i))
            labels[static_cast<std::size_t>(i - 1)] = {kInt32, m.TimeLabel(i)};
    return labels;
}

TaggedArray DepletionMethod::StoredWeights() const
{
    TaggedArray weights(static_cast<std::size_t>(m.NAPoints()));
    for (int i = 1; i <= m.NAPoints(); ++i)
        if (m.Included(i))
            weights[static_cast<std::size_t>(i - 1)] = {
                kDouble, m_regression.Weights()[static_cast<std::size_t>(i - 1)]};
    return weights;
}

/// The second regressor, which a gamma fit overwrites by the time labels.
TaggedArray DepletionMethod::StoredTimes() const
{
    if (m.FitOp == fit_op::kGamma)
        return TimeLabels([this](int i) { return m.Included(i); });
    TaggedArray times(static_cast<std::size_t>(m.NAPoints()));
    for (int i = 1; i <= m.NAPoints(); ++i)
        if (m.Included(i))
            times[static_cast<std::size_t>(i - 1)] = {kDouble, m_regression.SecondRegressor(i)};
    return times;
}

/// The regression is not stored: what is asked of the fit later (its remarks, its replicates) runs over it.
void DepletionMethod::PrepareReloaded()
{
    constexpr std::int32_t kRepaired = 3;
    BuildRegression();
    if (m_regression.Solve(m) && m.StartEstKind == kRepaired) {
        Estimates own;
        TakeCoefficients(own);
        m.replacedStart = own[m.Table().searched[0]];
    }
    if (fit_op::IsLeastSquares(m.FitOp))
        m.objectiveUnit = UnitOfSumSq(m, m_regression.Weights());
}

TaggedNumber clsRecruitINdex::StoredZ() const
{
    return {project_file::kInt16, static_cast<double>(m_z)};
}

void clsRecruitINdex::TakeStoredZ(const TaggedNumber& z)
{
    m_z = checked::ToInt16(z.value);
}

TaggedNumber clsProduction::StoredZ() const
{
    return {project_file::kFloat, static_cast<double>(m_z)};
}

void clsProduction::TakeStoredZ(const TaggedNumber& z)
{
    m_z = static_cast<float>(z.value);
}

/// Only least squares has weights; the array has its size all the same.
TaggedArray clsProduction::StoredWeights() const
{
    TaggedArray weights(static_cast<std::size_t>(m.NAPoints()));
    for (int t = 1; fit_op::IsLeastSquares(m.FitOp) && t <= m.NAPoints(); ++t)
        weights[static_cast<std::size_t>(t - 1)] = {kDouble, WeightVec(t)};
    return weights;
}

/// Under least squares the periods count from 0 and all of them have a place. Deliberate.
TaggedArray clsProduction::StoredTimes() const
{
    if (!fit_op::IsLeastSquares(m.FitOp))
        return TimeLabels([this](int t) { return m.Included(t); });
    TaggedArray times;
    for (int t = 1; t <= m.NAPoints(); ++t)
        times.push_back({kInt32, static_cast<double>(t - 1)});
    return times;
}

/// The moment start of the fit is not stored: a replicate starts its search of the shape at the fit's own.
void clsProduction::PrepareReloaded()
{
    m_startNu = m.GammaNu;
    if (fit_op::IsLeastSquares(m.FitOp))
        FillWeights();
}
