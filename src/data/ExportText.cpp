// SPDX-License-Identifier: GPL-3.0-or-later
#include "data/ExportText.h"

#include "base/NumberText.h"
#include "base/Windows1252.h"
#include "data/clsVeltData.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace
{
constexpr const char* kLineEnd = "\r\n";

std::string DescriptionLine(const clsVeltData& data)
{
    std::string line = ToWindows1252(data.DSDesc());
    std::replace_if(
        line.begin(), line.end(), [](char c) { return (c >= '\0' && c < ' ') || c == '\x7f'; }, ' ');
    return line;
}

std::vector<int> PresentColumns(const clsVeltData& data)
{
    std::vector<int> present;
    for (int column = columns::kFirst; column <= columns::kLast; ++column)
        if (data.ColPresent(column))
            present.push_back(column);
    return present;
}

std::string ValueText(const clsVeltData& data, int column, int row)
{
    const float value = data.DB(column, row);
    if (std::isfinite(value))
        return number_text::Shortest(value);
    const std::string place = "\"" + data.TheRun().globals.ColumnDisplayNames(column) + "\" of period " +
                              std::to_string(data.MinTimeP() + row - 1);
    throw VeltError(errors::kInvalidArgument,
                    "The table cannot be exported as text: " + place + " is " +
                        (std::isnan(value) ? "not a number" : "infinite") +
                        ". Enter a value there, or -1 where there is none, and export again.",
                    "clsVeltDATA_ExportToASCIIFile");
}
} // namespace

std::string TextOf(const clsVeltData& data)
{
    const std::vector<int> present = PresentColumns(data);
    std::string text = DescriptionLine(data) + kLineEnd + "Time\t";
    for (const int column : present)
        text += data.TheRun().globals.ColumnFileNames(column) + "\t";
    text += kLineEnd;
    for (int row = 1; row <= data.ShownRows(); ++row) {
        text += std::to_string(data.MinTimeP() + row - 1) + "\t";
        for (const int column : present)
            text += ValueText(data, column, row) + "\t";
        text += kLineEnd;
    }
    return text;
}

void clsVeltData::ExportToASCIIFile(const std::string& path, const FileCalls& calls) const
{
    ReplaceFile(path, TextOf(*this), calls);
}
