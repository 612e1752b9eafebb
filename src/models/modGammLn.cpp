// SPDX-License-Identifier: GPL-3.0-or-later
#include "models/modGammLn.h"

#include "base/Checked.h"

namespace modGammLn
{

double GammLn(double x)
{
    // Further down the series happens to give numbers between its poles; none of them is a logarithm of
    // Gamma.
    if (!(x > 0.0)) [[unlikely]]
        RaiseInvalidArgument();
    double y = x - 1.0;
    double tmp = y + 5.5;
    tmp = (y + 0.5) * std::log(tmp) - tmp;
    // Written out: the order of the sums is that of the loop, and the six quotients can overlap.
    double ser = 1.0;
    ser += 76.18009173 / (y += 1.0);
    ser += -86.50532033 / (y += 1.0);
    ser += 24.01409822 / (y += 1.0);
    ser += -1.231739516 / (y += 1.0);
    ser += 0.00120858003 / (y += 1.0);
    ser += -0.00000536382 / (y + 1.0);
    return checked::Finite(tmp + checked::Ln(2.50662827465 * ser));
}

} // namespace modGammLn
