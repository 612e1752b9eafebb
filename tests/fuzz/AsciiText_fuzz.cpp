// SPDX-License-Identifier: GPL-3.0-or-later
// Whatever the bytes, the text reader reads a whole record or refuses it in one sentence.
#include "files/AsciiText.h"

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>

namespace
{
void Demand(bool holds)
{
    if (!holds)
        std::abort();
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    try {
        const AsciiText text = ReadAsciiText({data, size});
        Demand(!text.headings.empty() && text.headings.size() <= kMaxTextColumns);
        Demand(text.columns.size() == text.headings.size() && text.Rows() > 0);
        Demand(text.lines.size() == text.Rows());
        for (const auto& column : text.columns) {
            Demand(column.size() == text.Rows());
            for (const double value : column)
                Demand(std::isfinite(value));
        }
    } catch (const ImportError& error) {
        Demand(!error.description.empty() && !error.place.empty());
    }
    return 0;
}
