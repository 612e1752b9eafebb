// SPDX-License-Identifier: GPL-3.0-or-later
// Overviews and the documents that they are saved in.
#pragma once

#include "AskProgram.h"
#include "PrintedWords.h"
#include "Session.h"
#include "views/OverviewPage.h"

#include <QTemporaryDir>

inline ParameterReport Report()
{
    ParameterReport report;
    report.modelTitle = "PROD. MODEL(FOX)      ";
    report.fitTitle = "Log Transform";
    report.rSqr = "0.987";
    report.inputs = {{"Initial Proportion", "1"}, {"LAG", "0"}};
    report.estimates = {{"K & more", "5123"}, {"q", "2.5E-04"}, {"r", "0.4"}};
    return report;
}

inline Overview Page(int graphs)
{
    Overview page;
    page.dataSet = "ling.vl3 - Ling <north>";
    page.report = Report();
    for (int i = 1; i <= graphs; ++i)
        page.graphs.emplace_back(Graph(qPrintable("Subject" + QString::number(i))));
    return page;
}

struct Folder {
    QString Path(const char* name) const { return dir.filePath(QString::fromLatin1(name)); }
    QTemporaryDir dir;
};

/// The first word of that text on the page of a document, in points.
inline QRectF PlaceOf(const QString& path, const QString& text)
{
    for (const Word& word : WordsIn(Ask("pdftotext", {"-bbox", path, "-"})))
        if (word.text == text)
            return word.place;
    return {};
}
