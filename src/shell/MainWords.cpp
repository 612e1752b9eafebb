// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/MainWords.h"

#include "base/Paths.h"
#include "base/Text.h"
#include "data/clsVeltData.h"

#include <QCoreApplication>
#include <QMimeData>
#include <QUrl>

namespace
{
QString Said(const char* text)
{
    return QCoreApplication::translate("frmVelt3", text);
}
} // namespace

Message main_words::About()
{
    return {.text = "VELT " VELT_VERSION "\n\n"
                    "Catch, effort and abundance index data of a fishery: stock sizes, "
                    "catchability and their confidence intervals.\n\n"
                    "To cite it: VELT developers (2026). VELT " VELT_VERSION
                    ": estimates of fish stocks from catch, effort and abundance. Say which model "
                    "and which error model were used.\n\n"
                    "This program is free software under the GNU General Public License, "
                    "version 3 or later. It comes without any warranty.",
            .icon = Icon::Information,
            .title = "About VELT 3.0"};
}

QString main_words::Caption(const clsVeltData* data)
{
    QString caption = QStringLiteral("VELT 3.0");
    if (data != nullptr)
        caption += " - " +
                   (data->DSFName().empty() ? Said("Untitled")
                                            : QString::fromStdString(GetFileName(data->DSFName()))) +
                   " - " + QString::fromStdString(Trim(data->DSDesc()));
    return caption;
}

QString main_words::Hint(bool fileOpen)
{
    return fileOpen ? Said("This data set has no time periods. Open another text file, or fill it by hand: "
                           "Edit Mode, Insert Column and Add Row(s) in the Edit menu.")
                    : Said("To begin, choose New or Open from the File menu, or drop a project (*.vl3, "
                           "*.vl2) or a table (*.txt, *.csv) here.");
}

QString main_words::FileIn(const QMimeData& mime)
{
    if (mime.urls().size() != 1 || !mime.urls().first().isLocalFile())
        return {};
    QString path = mime.urls().first().toLocalFile();
    for (const char* ending : {".txt", ".csv", ".vl3", ".vl2"})
        if (path.endsWith(QLatin1String(ending), Qt::CaseInsensitive))
            return path;
    return {};
}
