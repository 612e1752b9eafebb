// SPDX-License-Identifier: GPL-3.0-or-later
// Whatever the bytes, the text reader reads a whole record or refuses it in one sentence.
#include "files/AsciiText.h"
#include "fuzz/FuzzChecks.h"

#include <cmath>

namespace
{
void Check(const AsciiText& text)
{
    Demand(!text.headings.empty() && text.headings.size() <= kMaxTextColumns, "1 to 256 headings");
    Demand(text.columns.size() == text.headings.size() && text.Rows() > 0, "a column a heading");
    Demand(text.lines.size() == text.Rows(), "a line a row");
    Demand(IsUtf8(text.description), "the description is UTF-8", text.description);
    for (const std::string& heading : text.headings)
        Demand(!heading.empty() && IsUtf8(heading), "headings are UTF-8", heading);
    for (const auto& column : text.columns) {
        Demand(column.size() == text.Rows(), "columns are of equal length");
        Demand(std::all_of(column.begin(), column.end(), [](double v) { return std::isfinite(v); }),
               "a value is a number");
    }
}

template <typename Read>
bool IsRefused(Read read)
{
    try {
        read();
        return false;
    } catch (const ImportError& error) {
        DemandSentence(error.description);
        DemandSentence(error.place);
        return true;
    }
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const Bytes bytes(data, size);
    const bool refused = IsRefused([&] { Check(ReadAsciiText(bytes)); });
    const bool noDescription = IsRefused([&] { ReadAsciiDescription(bytes); });
    Demand(refused || !noDescription, "a file that can be read has a first line");
    return 0;
}
