// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace modGSer
{
/// Lower regularised incomplete gamma P(a, x) by its series; `gln` becomes ln Gamma(a).
/// \throws VeltError 5 with the source "GSER" when x < 0 or the series has not settled after 100 terms
double GSer(double a, double x, double& gln);
} // namespace modGSer
