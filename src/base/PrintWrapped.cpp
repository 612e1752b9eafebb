// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/PrintWrapped.h"

#include "base/Ports.h"
#include "base/Text.h"

void PrintWrapped(IPrintout& printout, const std::string& text, const std::string& hanging)
{
    const double width = printout.PrintableWidth();
    for (const std::string& line : WrapText(
             text, hanging, [&](const std::string& fitting) { return printout.TextWidth(fitting) <= width; }))
        printout.Print(line);
}
