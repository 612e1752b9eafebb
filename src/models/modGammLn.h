// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace modGammLn
{
/// ln Gamma(x) by the six-term Lanczos series (Lanczos 1964), relative error under 2e-10 for x > 0.
/// \throws VeltError 5 outside the domain of the series' logarithms
double GammLn(double x);
} // namespace modGammLn
