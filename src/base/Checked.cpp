// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/Checked.h"

namespace checked
{
namespace
{
template <typename Int>
Int ToWhole(double x)
{
    const double whole = std::nearbyint(x); // the default rounding mode: ties to even
    if (!(whole >= std::numeric_limits<Int>::min() && whole <= std::numeric_limits<Int>::max()))
        RaiseOverflow();
    return static_cast<Int>(whole);
}
} // namespace

std::int16_t ToInt16(double x)
{
    return ToWhole<std::int16_t>(x);
}

std::int32_t ToInt32(double x)
{
    return ToWhole<std::int32_t>(x);
}

} // namespace checked
