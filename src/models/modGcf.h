// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace modGcf
{
/// Upper regularised incomplete gamma Q(a, x) by its continued fraction; `gln` becomes ln Gamma(a).
/// \throws VeltError 5 with the source "GCF" when the fraction has not settled after 100 rounds
double Gcf(double a, double x, double& gln);
} // namespace modGcf
