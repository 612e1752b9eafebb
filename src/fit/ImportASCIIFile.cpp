// SPDX-License-Identifier: GPL-3.0-or-later
// The import of a text file as the person at the desk meets it: its questions and failures as boxes.
#include "base/FileErrors.h"
#include "base/FileType.h"
#include "data/ImportText.h"
#include "fit/ImportBoxes.h"
#include "fit/clsMethManager.h"

namespace
{
class QuestionsAsBoxes : public IImportQuestions
{
public:
    explicit QuestionsAsBoxes(Run& run) : m_run(run) {}

    bool GoesOnWithoutDescription() override { return ::GoesOnWithoutDescription(m_run); }
    bool Assigns(AsciiWizard& wizard) override { return m_run.user.AskAsciiWizard(wizard); }
    bool TakesAsConsecutive(const UnevenLabels& labels) override
    {
        const Message question = ImportBox(
            labels.Sentence() + "\nDo you wish to take the rows as consecutive periods all the same?",
            Buttons::YesNo);
        return m_run.reporter.Show(question) == Answer::Yes;
    }

private:
    Run& m_run;
};

/// Tells the user what went wrong. \return whether to try the import again
bool RetryAfter(Run& run, const VeltError& error, const std::string& path)
{
    if (error.IsUserCancel())
        return false; // the user knows
    if (const auto* const refused = dynamic_cast<const FileError*>(&error))
        return RetryAfterFileError(run, *refused, path);
    const auto* const placed = dynamic_cast<const ImportError*>(&error);
    const std::string place = placed != nullptr ? placed->place : std::string();
    // Other numbers, which the file errors do not list, would only be called "unidentified" by them.
    if (FindFileError(error.number) != nullptr)
        return FileErrors(error.number, run.reporter, place) == FileErrorDecision::Retry;
    run.reporter.Show(ImportBox(error.description + (place.empty() ? "" : "\n" + place), Buttons::Ok));
    return false;
}
} // namespace

bool clsMethManager::ImportASCIIFile(const std::string& path)
{
    QuestionsAsBoxes questions(m_run);
    for (;;) {
        try {
            if (GetFileType(path) == FileType::CommaSeparated)
                m_data->ImportCSVFile(path, questions);
            else
                m_data->ImportASCIIFile(path, questions);
            return true;
        } catch (const VeltError& error) {
            if (!RetryAfter(m_run, error, path))
                return false;
        }
    }
}
