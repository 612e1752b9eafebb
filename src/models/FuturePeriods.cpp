// SPDX-License-Identifier: GPL-3.0-or-later
#include "models/FuturePeriods.h"

FuturePeriods::FuturePeriods(ModelState& state, int periods)
    : m(state), m_kept(std::make_unique<const ModelState>(state)), m_naPoints(state.NAPoints()),
      m_ndPoints(state.NDPoints()), m_toggledIn(state.data->ToggledIn()), m_effort(state.data->Effort())
{
    clsVeltData& data = *m.data;
    data.OrigNAPoints(m_naPoints);
    data.NAPoints(m_naPoints + periods);
    data.NDPoints(m_naPoints + periods + 1);
    // A row of the table without a total catch may hold an effort and a tick; it is no part of the fit.
    for (int row = m_naPoints + 1; row <= data.NAPoints(); ++row)
        data.ToggledIn(row, false);
}

FuturePeriods::~FuturePeriods()
{
    clsVeltData& data = *m.data;
    data.NAPoints(m_naPoints);
    data.NDPoints(m_ndPoints);
    for (int row = m_naPoints + 1; row <= clsVeltData::kRows; ++row) {
        data.ToggledIn(row, m_toggledIn(row));
        if (row <= data.ShownRows())
            data.Effort(row, m_effort(row));
    }
    const ModelState left = m;
    m = *m_kept;
    m.DIYTCatch = left.DIYTCatch;
    for (int i = m_naPoints + 1; i <= clsVeltData::kRows; ++i) {
        m.ObsTCatchRef(i) = left.ObsTCatchRef(i);
        m.ObsCatchRef(i) = left.ObsCatchRef(i);
        if (i > m_ndPoints)
            m.Nt(i) = left.Nt(i);
    }
}
