// SPDX-License-Identifier: GPL-3.0-or-later
#include "fit/ExportToASCIIFile.h"

#include "base/FileErrors.h"
#include "base/StringTable.h"
#include "data/clsVeltData.h"

bool ExportToASCIIFile(const clsVeltData& data, const std::string& path, const FileCalls& calls)
{
    ErrorReporter& reporter = data.TheRun().reporter;
    for (;;) {
        try {
            data.ExportToASCIIFile(path, calls);
            reporter.Show({.text = LoadResString(1312) + path, .icon = Icon::Information});
            return true;
        } catch (const WriteError& error) {
            if (FileErrors(FileErrorOf(error.code), reporter, error.description) != FileErrorDecision::Retry)
                return false;
        }
    }
}
