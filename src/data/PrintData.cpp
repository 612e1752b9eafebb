// SPDX-License-Identifier: GPL-3.0-or-later
#include "data/PrintData.h"

#include "base/NumberText.h"
#include "base/PrintWrapped.h"
#include "base/Text.h"
#include "data/clsVeltData.h"

#include <cstdint>
#include <string>

namespace
{
constexpr std::size_t kFieldWidth = 16;

/// A title one character too long loses it. Deliberate: the columns of the listing are that wide.
std::string Field(const std::string& text)
{
    return PadString(text, kFieldWidth);
}

const modVeltGlobals::Globals& Texts(const clsVeltData& data)
{
    return data.TheRun().globals;
}

/// One line of the listing: what `field` says of each present column of the group, behind `label`.
template <typename FieldOf>
std::string Line(const clsVeltData& data, const ColumnGroup& group, const std::string& label,
                 const FieldOf& field)
{
    std::string line = Field(label);
    for (int column = group.first; column <= group.last; ++column) {
        if (data.ColPresent(column))
            line += Field(field(column));
    }
    return line;
}

std::string TitleLine(const clsVeltData& data, const ColumnGroup& group)
{
    return Line(data, group, Texts(data).TimeTitle,
                [&](int column) { return Texts(data).ColumnDisplayNames(column); });
}

/// The stored values, whatever the format of their column: an empty cell is printed as -1. Deliberate.
std::string RowLine(const clsVeltData& data, const ColumnGroup& group, int row)
{
    const std::int64_t label = std::int64_t{data.MinTimeP()} + row - 1;
    return Line(data, group, std::to_string(label),
                [&](int column) { return number_text::Plain(data.DB(column, row)); });
}

void PrintHeading(const clsVeltData& data, const std::string& page, IPrintout& printout)
{
    printout.CurrentX(printout.PrintableWidth() / 2.0);
    printout.Print(page);
    printout.Print("");
    PrintWrapped(printout, data.DSFName());
    printout.Print("");
    PrintWrapped(printout, Trim(data.DSDesc()));
    printout.Print("");
    printout.Print("");
}

/// The heading stands once, also above a group that runs on over further pages. Deliberate.
void PrintGroup(const clsVeltData& data, const ColumnGroup& group, const std::string& page,
                IPrintout& printout)
{
    PrintHeading(data, page, printout);
    printout.Print(TitleLine(data, group));
    printout.Print("");
    printout.Print("");
    for (int row = 1; row <= data.ShownRows(); ++row)
        printout.Print(RowLine(data, group, row));
}

void PrintListing(const clsVeltData& data, IPrintout& printout)
{
    const std::vector<ColumnGroup> groups = GroupColumns(data, printout);
    for (std::size_t i = 0; i < groups.size(); ++i) {
        if (i > 0)
            printout.NewPage();
        PrintGroup(data, groups[i],
                   Texts(data).Page + " " + std::to_string(i + 1) + " " + Texts(data).Of + " " +
                       std::to_string(groups.size()),
                   printout);
    }
    printout.End();
}
} // namespace

/// A group is measured with the time in front of it, with which it is printed. Behind the first group that is
/// as wide as the column that closed the group before, from which on the next one is measured.
std::vector<ColumnGroup> GroupColumns(const clsVeltData& data, const IPrintout& printout)
{
    std::vector<ColumnGroup> groups{{.first = columns::kFirst, .last = columns::kLast}};
    bool empty = true; // no column stands in the last group yet
    for (int column = columns::kFirst; column <= columns::kLast; ++column) {
        if (!data.ColPresent(column))
            continue;
        const auto overflows = [&] {
            const std::string line = TitleLine(data, {.first = groups.back().first, .last = column});
            return printout.TextWidth(line) > printout.PrintableWidth();
        };
        if (overflows() && !empty) {
            groups.back().last = column - 1;
            groups.push_back({.first = column, .last = columns::kLast});
        }
        if (overflows())
            throw ProgramError(errors::kPageTooSmall, "Data too large for page.", "_PrintData");
        empty = false;
    }
    return groups;
}

void clsVeltData::PrintData(IPrinter& printer) const
{
    const modVeltGlobals::Globals& texts = TheRun().globals;
    ErrorReporter& reporter = TheRun().reporter;
    try {
        if (const auto printout = printer.Open(Trim(m_dsDesc)))
            PrintListing(*this, *printout);
    } catch (const PrinterFault& fault) {
        reporter.Show({.text = texts.UnableToPrint + "\n\n" + fault.description});
    } catch (const VeltError& error) {
        if (error.number != kProgramErrorBase + errors::kPageTooSmall)
            throw;
        reporter.HandleError(error, "", texts.ColumnTooLarge);
    }
}
