// SPDX-License-Identifier: GPL-3.0-or-later
#include "files/AsciiWizard.h"

#include "base/Checked.h"
#include "base/ForeignText.h"
#include "base/NumberText.h"
#include "base/StringTable.h"
#include "base/VeltError.h"
#include "files/GuessDataColumn.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace
{
std::int16_t Label(double value, std::size_t line)
{
    try {
        return checked::ToInt16(value);
    } catch (const VeltError& error) {
        throw ImportError(error.number, error.description,
                          "The time label " + number_text::Plain(value) + " in line " + std::to_string(line) +
                              " is no whole number from -32768 to 32767.",
                          line);
    }
}

bool IsLabel(double value)
{
    return value == std::nearbyint(value) && value >= std::numeric_limits<std::int16_t>::min() &&
           value <= std::numeric_limits<std::int16_t>::max();
}

bool RisesByOne(const std::vector<double>& values)
{
    const auto next = [](double before, double value) { return value != before + 1.0; };
    return values.size() > 1 && std::all_of(values.begin(), values.end(), IsLabel) &&
           std::adjacent_find(values.begin(), values.end(), next) == values.end();
}

void CheckDataColumn(int dataColumn)
{
    if (dataColumn < 1 || dataColumn > AsciiWizard::kUserColumns)
        RaiseSubscript();
}
} // namespace

AsciiWizard::AsciiWizard(std::string file, AsciiText table, std::array<std::string, kUserColumns> titles)
    : fileName(std::move(file)), collFlexHeadings(std::move(table.headings)),
      collFlexData(std::move(table.columns)), decimals(std::move(table.decimals)),
      lines(std::move(table.lines)), missing(std::move(table.missing)), columnTitles(std::move(titles)),
      m_userColRef(collFlexHeadings.size(), kNone)
{
    decimals.resize(collFlexHeadings.size());
    missing.resize(collFlexHeadings.size());
}

int AsciiWizard::CopyColumn(int textColumn)
{
    const std::size_t index = Index(textColumn);
    collFlexHeadings.push_back(std::string(collFlexHeadings[index]));
    decimals.push_back(int{decimals[index]});
    missing.push_back(std::size_t{missing[index]});
    collFlexData.push_back(std::vector<double>(collFlexData[index]));
    m_userColRef.push_back(kNone);
    return TextColumns();
}

std::string AsciiWizard::Caption() const
{
    return LoadResString(210) + LoadResString(201) + std::to_string(step);
}

std::string AsciiWizard::StepTitle() const
{
    return LoadResString(step == 1 ? 202 : 204);
}

std::string AsciiWizard::Explanation() const
{
    return LoadResString(step == 1 ? 203 : 205);
}

void AsciiWizard::GuessTiming()
{
    if (step != 1)
        RaiseSubscript();
    for (int column = 1; column <= TextColumns() && timingColumn == 0; ++column) {
        const std::size_t index = Index(column);
        if (missing[index] == 0 && RisesByOne(collFlexData[index]))
            timingColumn = column;
    }
}

void AsciiWizard::ChooseTiming(int textColumn)
{
    if (step != 1)
        RaiseSubscript();
    Index(textColumn);
    timingColumn = textColumn;
}

void AsciiWizard::Next()
{
    if (!CanNext())
        RaiseSubscript();
    const std::vector<double>& labels = collFlexData.at(Index(timingColumn));
    if (labels.empty() || lines.size() != labels.size())
        RaiseSubscript();
    if (const std::size_t line = missing[Index(timingColumn)]; line != 0)
        throw BadData("Line " + std::to_string(line) + ", column \"" +
                          Quotable(collFlexHeadings[Index(timingColumn)]) + "\": a time label is missing.",
                      line);
    const std::int16_t first = Label(labels.front(), lines.front());
    intMaxTimeP = Label(labels.back(), lines.back());
    intMinTimeP = first;
    step = 2;
}

void AsciiWizard::GuessColumns()
{
    if (step != 2)
        RaiseSubscript();
    for (int textColumn = 1; textColumn <= TextColumns(); ++textColumn) {
        if (textColumn == timingColumn || enuUserColRef(textColumn) != kNone)
            continue;
        const int guess = GuessDataColumn(collFlexHeadings[Index(textColumn)], columnTitles);
        if (guess != kNone && !blnVELTColSel(guess))
            Assign(textColumn, guess);
    }
}

void AsciiWizard::Back()
{
    std::fill(m_userColRef.begin(), m_userColRef.end(), kNone);
    step = 1;
}

int AsciiWizard::enuUserColRef(int textColumn) const
{
    return m_userColRef[Index(textColumn)];
}

bool AsciiWizard::blnVELTColSel(int dataColumn) const
{
    CheckDataColumn(dataColumn);
    return std::find(m_userColRef.begin(), m_userColRef.end(), dataColumn) != m_userColRef.end();
}

std::vector<int> AsciiWizard::Choices(int textColumn) const
{
    const int own = enuUserColRef(textColumn);
    std::vector<int> choices{kNone};
    for (int column = 1; column <= kUserColumns; ++column) {
        if (column == own || !blnVELTColSel(column))
            choices.push_back(column);
    }
    return choices;
}

std::string AsciiWizard::ChoiceTitle(int dataColumn) const
{
    if (dataColumn == kNone)
        return LoadResString(211);
    CheckDataColumn(dataColumn);
    return columnTitles[static_cast<std::size_t>(dataColumn - 1)];
}

void AsciiWizard::Assign(int textColumn, int dataColumn)
{
    const std::vector<int> choices = Choices(textColumn);
    if (textColumn == timingColumn || std::find(choices.begin(), choices.end(), dataColumn) == choices.end())
        RaiseSubscript();
    m_userColRef[Index(textColumn)] = dataColumn;
}

void AsciiWizard::Finish()
{
    if (!CanFinish())
        RaiseSubscript();
    OK = true;
}

std::size_t AsciiWizard::Index(int textColumn) const
{
    if (textColumn < 1 || textColumn > TextColumns())
        RaiseSubscript();
    return static_cast<std::size_t>(textColumn - 1);
}
