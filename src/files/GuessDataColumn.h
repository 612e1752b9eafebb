// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <string>
#include <string_view>

/// The data column, 1 to 9, that a heading of a text file plainly names; 0 where it names none, or might name
/// two. Compared are the names that a text export writes, `titles` (by data column) and a few words of the
/// field, all without regard to case and to everything but letters and digits. Units behind a name, as in
/// "Effort (boat days)" or "mean_weight_kg", do not count.
///
/// Two things that a person might take for plain are none here. "Catch", "landings" and "yield" may be the
/// whole catch of a period or the part that the effort took, in weight or in numbers; so may "catch weight"
/// and "total catch" be two columns each. And "days" may be the effort or the time.
int GuessDataColumn(std::string_view heading, const std::array<std::string, 9>& titles);
