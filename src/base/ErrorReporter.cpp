// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/ErrorReporter.h"

void ErrorReporter::HandleError(const VeltError& error, const std::string& source, const std::string& hint)
{
    if (error.IsUserCancel())
        return;
    const std::string& where = error.source.empty() ? source : error.source;
    std::string text = error.description;
    if (!where.empty())
        text += "\n\n(" + where + ")";
    if (!hint.empty())
        text += "\n\n" + hint;
    m_user.Show({.text = text, .icon = Icon::Exclamation});
}
