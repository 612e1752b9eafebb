// SPDX-License-Identifier: GPL-3.0-or-later
#include "files/GuessDataColumn.h"

#include "base/StringTable.h"

#include <algorithm>
#include <vector>

namespace
{
constexpr int kFirstFileName = 1830; ///< in the string table, of data column 1

/// Words for a data column that people use and the program does not, folded.
struct OtherName {
    std::string_view name;
    int dataColumn;
};

constexpr auto kOtherNames = std::to_array<OtherName>({
    // The whole catch: its titles without abbreviations. Both words must be there, total and the unit.
    {"totalcatchwt", 1},
    {"totalcatchweight", 1},
    {"totcatchweight", 1},
    {"totalcatchnums", 2},
    {"totalcatchnumbers", 2},
    {"totcatchnumbers", 2},
    {"meanweight", 3},
    {"averageweight", 3},
    {"fishingeffort", 4},
    // The program takes catch per unit effort as an index of abundance.
    {"cpue", 7},
    {"catchperuniteffort", 7},
    {"catchperunitofeffort", 7},
    {"index", 7},
    {"indexofabundance", 7},
    {"biomassindex", 7},
    {"varianceofindex", 8},
    {"indexvariance", 8},
    {"varabundanceindex", 8},
    {"recruits", 9},
    {"recruitment", 9},
    {"recruitmentindex", 9},
});

constexpr auto kUnits = std::to_array<std::string_view>(
    {"t",     "mt",    "kt",    "ton",   "tons",    "tonne",  "tonnes", "kg",        "g",
     "lb",    "lbs",   "h",     "hr",    "hrs",     "hour",   "hours",  "day",       "days",
     "week",  "weeks", "trips", "sets",  "tows",    "hauls",  "traps",  "pots",      "nets",
     "lines", "hooks", "rods",  "boats", "vessels", "pounds", "nights", "thousands", "millions"});

// These belong to a unit beside another word of one ("kg/tow", "boat days"). Alone they may mean more: "CPUE
// boat" is one of several fleets.
constexpr auto kPartsOfUnits = std::to_array<std::string_view>(
    {"trip", "set", "tow", "haul", "trap", "pot", "net", "line", "hook", "rod", "boat", "vessel", "night"});

bool IsLetter(char c)
{
    // Bytes above 127 are parts of letters: "Indexé" is not "Index".
    return (c >= 'a' && c <= 'z') || static_cast<unsigned char>(c) > 127U;
}

bool IsDigit(char c)
{
    return c >= '0' && c <= '9';
}

/// `text` in small letters, with a blank for the no-break space that pasted headings hold.
std::string Small(std::string_view text)
{
    std::string small;
    for (std::size_t at = 0; at < text.size(); ++at) {
        const bool noBreak = text.substr(at, 2) == "\xC2\xA0";
        const char c = text[at];
        small += noBreak ? ' ' : static_cast<char>(c >= 'A' && c <= 'Z' ? c - 'A' + 'a' : c);
        at += noBreak ? 1U : 0U;
    }
    return small;
}

std::vector<std::string_view> PartedAt(std::string_view text, std::string_view separators)
{
    std::vector<std::string_view> words;
    for (;;) {
        const std::size_t first = std::min(text.find_first_not_of(separators), text.size());
        text.remove_prefix(first);
        if (text.empty())
            return words;
        words.push_back(text.substr(0, text.find_first_of(separators)));
        text.remove_prefix(words.back().size());
    }
}

template <typename Words>
bool IsIn(std::string_view word, const Words& words)
{
    return std::find(words.begin(), words.end(), word) != words.end();
}

/// "kg", "kg/h", "kg/tow", "boat-days".
bool IsUnit(std::string_view word)
{
    const auto isUnit = [](std::string_view piece) { return IsIn(piece, kUnits); };
    const std::vector<std::string_view> pieces = PartedAt(word, "/-");
    return std::any_of(pieces.begin(), pieces.end(), isUnit) &&
           std::all_of(pieces.begin(), pieces.end(),
                       [&](std::string_view piece) { return isUnit(piece) || IsIn(piece, kPartsOfUnits); });
}

/// What may stand before a unit: "boat days", "1000 hooks".
bool LeadsUnit(std::string_view word)
{
    return IsIn(word, kPartsOfUnits) ||
           std::all_of(word.begin(), word.end(), [](char c) { return IsDigit(c) || c == '\''; });
}

/// The words of a heading without the units behind them. A unit alone is a name.
std::vector<std::string_view> NameWords(std::string_view small)
{
    // Statistics packages write a point in place of what a name may not hold.
    std::vector<std::string_view> words = PartedAt(small, " \t\r\n_.,;:()[]{}");
    for (bool units = false; words.size() > 1; words.pop_back()) {
        if (!IsUnit(words.back()) && !(units && LeadsUnit(words.back())))
            break;
        units = true;
    }
    return words;
}

std::string Folded(const std::vector<std::string_view>& words)
{
    std::string letters;
    for (const std::string_view word : words)
        std::copy_if(word.begin(), word.end(), std::back_inserter(letters),
                     [](char c) { return IsLetter(c) || IsDigit(c); });
    return letters;
}

std::string FoldedName(std::string_view text)
{
    return Folded(NameWords(Small(text)));
}
} // namespace

int GuessDataColumn(std::string_view heading, const std::array<std::string, 9>& titles)
{
    const std::string name = FoldedName(heading);
    if (name.empty())
        return 0;
    for (std::size_t i = 0; i < titles.size(); ++i) {
        const int column = static_cast<int>(i) + 1;
        if (name == FoldedName(titles[i]) || name == FoldedName(LoadResString(kFirstFileName + column - 1)))
            return column;
    }
    const auto other = std::find_if(kOtherNames.begin(), kOtherNames.end(),
                                    [&](const OtherName& known) { return known.name == name; });
    return other == kOtherNames.end() ? 0 : other->dataColumn;
}
