// SPDX-License-Identifier: GPL-3.0-or-later
// Text that somebody else wrote (cells, headings, option values, file names), made fit for a message: it must
// neither drown the sentence around it nor speak to the terminal.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

/// Most characters of foreign text in a message.
inline constexpr std::size_t kMostQuoted = 300;

/// `text` as a message may quote it: on one line, at most `most` characters and "..." where there were more,
/// well-formed UTF-8 whatever the bytes. Control characters stand as \n, \r, \t or \x1b; those above 127, and
/// the marks that break lines or turn the direction of writing, as \u0085 or \u202e; bytes that are no UTF-8
/// as \xff. An escape is never cut. A backslash stays as it is, so that paths can be read.
std::string Quotable(std::string_view text, std::size_t most = kMostQuoted);

/// A whole message as a terminal may show it: the same escapes, but its line breaks stay and nothing is cut.
/// The last net for sentences that were put together elsewhere.
std::string Printable(std::string_view message);
