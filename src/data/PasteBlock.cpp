// SPDX-License-Identifier: GPL-3.0-or-later
#include "data/PasteBlock.h"

namespace
{
constexpr std::string_view kEndsOfCell = "\t\r\n";
constexpr std::size_t kMostCells = 100'000;

/// Takes the next cell off the front of `text`, up to its tab or line end.
std::string TakeCell(std::string_view& text)
{
    if (!text.starts_with('"')) {
        std::string cell(text.substr(0, text.find_first_of(kEndsOfCell)));
        text.remove_prefix(cell.size());
        return cell;
    }
    std::string cell;
    for (std::size_t i = 1; i < text.size(); ++i) {
        if (text[i] == '"' && (i + 1 == text.size() || text[i + 1] != '"')) {
            text.remove_prefix(i + 1);
            // What follows the closing quote belongs to the cell, which then is no number: the quote stays.
            const std::string rest(text.substr(0, text.find_first_of(kEndsOfCell)));
            text.remove_prefix(rest.size());
            if (rest.find_first_not_of(' ') != std::string::npos)
                cell += '"';
            return cell + rest;
        }
        if (text[i] == '"')
            ++i;
        cell += text[i];
    }
    text = {}; // a quote that is never closed
    return cell;
}

/// Takes a line end off the front of `text`, where nothing else can stand. \return whether there was one
bool TakeLineEnd(std::string_view& text)
{
    if (text.empty())
        return false;
    text.remove_prefix(text.starts_with("\r\n") ? 2 : 1);
    return true;
}
} // namespace

PasteBlock ReadPasteBlock(std::string_view text)
{
    PasteBlock block;
    std::size_t cells = 0;
    while (!text.empty() && cells < kMostCells) {
        std::vector<std::string>& row = block.rows.emplace_back();
        row.push_back(TakeCell(text));
        for (++cells; text.starts_with('\t') && cells < kMostCells; ++cells) {
            text.remove_prefix(1);
            row.push_back(TakeCell(text));
        }
        block.endsInLineEnd = TakeLineEnd(text);
    }
    return block;
}
