// SPDX-License-Identifier: GPL-3.0-or-later
// Whatever the file and whatever the answers to its questions, an import fills a data set that makes sense or
// leaves one that is as new. The first kChoices bytes are the answers, the rest is the file.
//
//     0       answers, one a bit: see Answers
//     1, 2    timing column, and the one on second thoughts
//     3..     one a text column: its data column
#include "base/StringTable.h"
#include "data/ImportText.h"
#include "data/clsVeltData.h"
#include "files/AsciiWizard.h"
#include "fuzz/FuzzChecks.h"
#include "fuzz/FuzzDesk.h"

#include <cmath>

namespace
{
constexpr std::size_t kChoices = 13;
constexpr std::size_t kAssigned = kChoices - 3; ///< text columns that get an answer

/// Raised by a person who answers with an exception; the import passes it on.
struct GivenUp {
};

/// Answers from the first bytes; bits that are 0 go on with the import.
class Answers : public IImportQuestions
{
public:
    explicit Answers(Choices choices)
        : m_choices(choices), m_bits(m_choices.Byte()), m_timing(m_choices.Byte()),
          m_otherTiming(m_choices.Byte())
    {
    }

    bool GoesOnWithoutDescription() override { return !Bit(0); }
    bool TakesAsConsecutive(const UnevenLabels& labels) override
    {
        DemandSentence(labels.Sentence());
        Demand(labels.line > 1, "labels stand below the headings");
        if (Bit(1))
            throw GivenUp();
        return !Bit(2);
    }
    bool Assigns(AsciiWizard& wizard) override
    {
        TakeTiming(wizard, m_timing);
        if (Bit(3)) { // looks at step 2 and thinks better of it
            wizard.Back();
            TakeTiming(wizard, m_otherTiming);
        }
        if (Bit(4))
            wizard.CopyColumn(wizard.timingColumn);
        for (int column = 1; column <= std::min<int>(wizard.TextColumns(), kAssigned); ++column)
            Assign(wizard, column, m_choices.Byte());
        if (!Bit(5))
            wizard.Finish();
        return !Bit(6);
    }

private:
    bool Bit(unsigned number) const { return ((m_bits >> number) & 1U) != 0; }
    static void TakeTiming(AsciiWizard& wizard, int wish)
    {
        wizard.ChooseTiming(1 + wish % wizard.TextColumns());
        wizard.Next();
    }
    void Assign(AsciiWizard& wizard, int column, std::uint8_t wish) const
    {
        if (column == wizard.timingColumn)
            return;
        if (Bit(7)) { // also what no list offers; the wizard raises
            wizard.Assign(column, wish);
            return;
        }
        const std::vector<int> offered = wizard.Choices(column);
        Demand(!offered.empty() && offered.front() == AsciiWizard::kNone, "(None) is always offered");
        wizard.Assign(column, offered[wish % offered.size()]);
    }

    Choices m_choices;
    unsigned m_bits;
    int m_timing, m_otherTiming;
};

void CheckFilled(const clsVeltData& data)
{
    const DataTable& table = data.Table();
    Demand(table.timeInts >= 1 && table.timeInts <= clsVeltData::kRows, "1 to 200 periods");
    Demand(table.maxTimeP - table.minTimeP + 1 == table.timeInts, "labels run from the first to the last");
    Demand(table.naPoints >= 0 && table.naPoints <= table.timeInts, "periods in the fit are periods");
    Demand(table.nntPoints >= 0 && table.nntPoints <= table.timeInts, "rows toggled in are periods");
    Demand(IsUtf8(data.DSDesc()), "the description is UTF-8", data.DSDesc());
    for (int column = columns::kFirst; column <= columns::kLast; ++column) {
        Demand(data.ColFormat(column).size() <= clsVeltData::kFormatWidth, "formats have their width");
        for (const float value : data.Column(column).All())
            Demand(std::isfinite(value), "a cell is a number");
    }
    for (int row = table.timeInts + 1; row <= clsVeltData::kRows; ++row)
        Demand(!data.Included(row), "a row that does not exist is not included");
}

/// Nothing of the file remains.
void CheckNew(const clsVeltData& data)
{
    const clsVeltData fresh(data.TheRun());
    Demand(data.Table() == fresh.Table(), "after a failure the table is as new");
    Demand(data.DSDesc().empty() && data.DSFName().empty() && !data.IsDirty(), "nor has it a name");
}

/// \return whether the import ended well
bool Import(clsVeltData& data, Choices choices)
{
    Answers answers(choices);
    try {
        ImportText(data, "table.txt", choices.Rest(), answers);
        return true;
    } catch (const GivenUp&) {
        return false;
    } catch (const ImportError& error) {
        DemandSentence(error.place);
        DemandSentence(error.description);
        return false;
    } catch (const VeltError& error) {
        Demand(error.IsUserCancel() || !error.description.empty(), "a failure has a sentence");
        return false;
    }
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size)
{
    static Desk desk; // its texts are read once
    clsVeltData data(desk.run);
    if (Import(data, Choices({bytes, size}, kChoices)))
        CheckFilled(data);
    else
        CheckNew(data);
    Demand(desk.user.messages.empty(), "an import shows nothing");
    return 0;
}
