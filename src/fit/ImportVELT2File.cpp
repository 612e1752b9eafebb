// SPDX-License-Identifier: GPL-3.0-or-later
// The import of a project of version 2.0 as the person at the desk meets it.
#include "base/StringTable.h"
#include "fit/ImportBoxes.h"
#include "fit/clsMethManager.h"

namespace
{
/// Tells the user what went wrong. \return whether to try the import again
bool RetryAfter(Run& run, const VeltError& error, const std::string& path)
{
    if (error.IsUserCancel())
        return false; // the user knows
    if (const auto* const refused = dynamic_cast<const FileError*>(&error))
        return RetryAfterFileError(run, *refused, path);
    run.reporter.Show(ImportBox(LoadResString(1301) + "\n" + error.description, Buttons::Ok));
    return false;
}
} // namespace

bool clsMethManager::ImportVELT2File(const std::string& path)
{
    for (;;) {
        try {
            m_data->ImportVELT2File(path, [this] { return GoesOnWithoutDescription(m_run); });
            return true;
        } catch (const VeltError& error) {
            if (!RetryAfter(m_run, error, path))
                return false;
        }
    }
}
