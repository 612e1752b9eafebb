// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

class IPrintout;

/// Prints `text`, without tabs, on as many lines as it takes between the margins; the further ones begin with
/// `hanging`.
void PrintWrapped(IPrintout& printout, const std::string& text, const std::string& hanging = {});
