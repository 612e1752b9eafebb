// SPDX-License-Identifier: GPL-3.0-or-later
// What comes out on paper: documents are printed to files, and their pages are read back.
#pragma once

#include "AskProgram.h"
#include "PrintedWords.h"
#include "views/DesktopPrinter.h"

#include <QFile>
#include <QPrinter>
#include <QTemporaryDir>

#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

constexpr double kPointsPerMillimetre = 72.0 / 25.4;

using Line = std::vector<Word>;
using Page = std::vector<Line>;

inline QString TextOf(const Line& line)
{
    QStringList words;
    for (const Word& word : line)
        words += word.text;
    return words.join(' ');
}

/// A document in a file of the test's own.
class Paper
{
public:
    QString Path() const { return m_folder.filePath("paper.pdf"); }
    bool Exists() const { return QFile::exists(Path()); }

    /// Chooses this file as the printer; A4 upright unless told otherwise.
    PrinterChoice Choice(QPageSize::PageSizeId size = QPageSize::A4,
                         QPageLayout::Orientation orientation = QPageLayout::Portrait)
    {
        return [=, this](QWidget*, const QString& title) {
            m_titles += title;
            auto printer = NewPrinter(title);
            printer->setOutputFormat(QPrinter::PdfFormat);
            printer->setPageSize(QPageSize(size));
            printer->setPageOrientation(orientation);
            printer->setOutputFileName(Path());
            return printer;
        };
    }

    QString Text() const { return Ask("pdftotext", {"-layout", Path(), "-"}); }

    /// The lines of each page; empty ones cannot be seen.
    std::vector<Page> Pages() const
    {
        QStringList texts = Ask("pdftotext", {"-bbox", Path(), "-"}).split("<page ");
        texts.removeFirst(); // what stands before the first page
        std::vector<Page> pages;
        for (const QString& text : texts)
            pages.push_back(LinesIn(text));
        return pages;
    }
    /// Around all words.
    QRectF Written() const
    {
        QRectF all;
        for (const Word& word : Words())
            all |= word.place;
        return all;
    }
    QRectF PlaceOf(const QString& text) const
    {
        for (const Word& word : Words())
            if (word.text == text)
                return word.place;
        return {};
    }

    QStringList m_titles; ///< of the documents

private:
    static Page LinesIn(const QString& text)
    {
        Line words = WordsIn(text);
        std::ranges::sort(words, {}, [](const Word& w) { // the program gives columns one after another
            return std::pair(std::lround(w.place.top()), w.place.left());
        });
        Page page;
        for (const Word& each : words) {
            if (page.empty() || each.place.top() - page.back().front().place.top() > 0.5)
                page.emplace_back();
            page.back().push_back(each);
        }
        return page;
    }
    std::vector<Word> Words() const
    {
        std::vector<Word> words;
        for (const Page& page : Pages())
            for (const Line& line : page)
                words.insert(words.end(), line.begin(), line.end());
        return words;
    }

    QTemporaryDir m_folder;
};
