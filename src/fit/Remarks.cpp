// SPDX-License-Identifier: GPL-3.0-or-later
#include "fit/Remarks.h"

#include "base/VeltError.h"
#include "fit/DataRemarks.h"
#include "fit/LimitRemarks.h"
#include "fit/SurfaceRemarks.h"

#include <utility>

namespace
{
/// Takes down what the rules say.
class Notes
{
public:
    /// Asks one rule. A remark stops nothing: a rule that fails on a strange fit has nothing to say about it.
    template <typename Rule>
    void Ask(Rule rule)
    {
        try {
            if (std::optional<Remark> remark = rule())
                m_remarks.push_back(std::move(*remark));
        } catch (const VeltError&) {
            return;
        }
    }
    std::vector<Remark> Taken() { return std::move(m_remarks); }

private:
    std::vector<Remark> m_remarks;
};

/// Parameters that the data have to determine, q among them.
int ParametersOf(const FitSurface& surface)
{
    const SearchedParameters& searched = surface.Searched();
    int parameters = 1;
    for (std::size_t i = 0; i < searched.count; ++i)
        parameters += searched.held.at(i) ? 0 : 1;
    return parameters;
}
} // namespace

std::vector<Remark> RemarksOfFit(IMethod& method, clsVeltData& data)
{
    Notes notes;
    FitSurface surface = method.Surface();
    const FitReading fit = ReadFit(method, data);
    notes.Ask([&] { return surface_remarks::StockUnbounded(fit, surface); });
    notes.Ask([&] { return surface_remarks::AtBound(fit, surface); });
    notes.Ask([&] { return surface_remarks::Oscillating(fit, surface); });
    notes.Ask([&] { return surface_remarks::BetterFitKnown(fit, surface, data); });
    notes.Ask([&] { return data_remarks::OneWayTrip(fit); });
    notes.Ask([&] { return data_remarks::WorseThanMean(fit); });
    notes.Ask([&] { return data_remarks::StartRepaired(fit); });
    notes.Ask([&] { return data_remarks::StockGone(fit); });
    notes.Ask([&] { return data_remarks::FewPeriods(surface.Periods(), ParametersOf(surface)); });
    notes.Ask([&] { return data_remarks::GapInCatch(fit); });
    notes.Ask([&] { return data_remarks::IndexUnused(fit); });
    notes.Ask([&] { return data_remarks::PellaYield(fit); });
    return notes.Taken();
}

std::vector<Remark> RemarksOfLimits(const IMethod& method, const clsVeltData& data,
                                    std::span<const ParameterLimits> limits)
{
    Notes notes;
    notes.Ask([&] {
        return limit_remarks::LimitsShifted(limit_remarks::ShiftedMeanPosition(method, data), limits,
                                            limit_remarks::MeasuredUnderGamma(method.WhichMeth()));
    });
    notes.Ask([&] { return limit_remarks::LimitsWide(limits); });
    notes.Ask([&] {
        return limit_remarks::ReplicatesFailed(method.ReplicatesDrawnAgain(), method.NumBootStraps());
    });
    return notes.Taken();
}

std::vector<Remark> RemarksOfFailure(const VeltError& error, const IMethod* method, const clsVeltData& data)
{
    Notes notes;
    if (method != nullptr && !error.IsUserCancel())
        notes.Ask([&] { return data_remarks::ZeroCatch(*method, data); });
    return notes.Taken();
}
