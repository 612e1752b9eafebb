// SPDX-License-Identifier: GPL-3.0-or-later
#include "models/Bootstraps.h"

#include "base/Checked.h"
#include "base/MeterScope.h"
#include "base/NumberText.h"

#include <algorithm>
#include <cmath>

using checked::ToFloat;

int GetValidPtNo(const ModelState& m)
{
    const int periods = m.NAPoints();
    const auto toggledIn = m.data->ToggledIn().All().first(static_cast<std::size_t>(periods));
    // The first draw nearly always serves; only before a second one is it worth knowing that one exists.
    for (bool checked = false;; checked = true) {
        const auto drawn = static_cast<std::size_t>(m.run->random.Next() * periods);
        if (toggledIn[drawn])
            return static_cast<int>(drawn) + 1;
        if (!checked && std::find(toggledIn.begin(), toggledIn.end(), true) == toggledIn.end())
            RaiseInvalidArgument();
    }
}

int RunReplicates(ModelState& m, const std::string& source, const std::function<bool(int)>& replicate)
{
    MeterScope meter(m.run->meter, m.run->globals.CalculatingBootstraps, m.NumBootStraps);
    int failures = 0;
    for (int b = 1; b <= m.NumBootStraps;) {
        const bool done = replicate(b);
        meter.Done(b, source);
        done ? ++b : ++failures;
    }
    m.replicatesDrawnAgain = failures;
    return failures;
}

void ResampleLogCatch(ModelState& m, Resample which)
{
    for (int i = 1; i <= m.NDPoints() - 1; ++i) {
        if (which == Resample::ToggledIn && !m.ToggledIn(i))
            continue;
        const int drawn = GetValidPtNo(m);
        m.CatchVector(i) = ToFloat(std::exp(static_cast<double>(m.ResidVec(drawn)) + m.FittedVec(i)));
    }
}

void ResampleGammaCatch(ModelState& m, const GammaCatchMatrix& matrix)
{
    for (int i = 1; i <= m.NAPoints(); ++i)
        m.CatchVector(i) = matrix.At(GetValidPtNo(m), i);
}

void WarnOfFailures(const ModelState& m, int failures)
{
    constexpr double kWorthTelling = 10.0; // percent
    const double percent = 100.0 * failures / (m.NumBootStraps + failures);
    if (percent <= kWorthTelling)
        return;
    m.run->user.Show(
        {.text = "Warning!  " + number_text::Fixed(percent, 0) +
                 "% of the bootstrap fits failed to converge or they produced invalid estimates.  "
                 "The estimated confidence intervals are likely to be unreliable. "});
}
