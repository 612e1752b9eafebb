// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QRectF>
#include <QRegularExpression>
#include <QString>

#include <vector>

/// A word on a page and where it stands, in points from the top left corner of the paper.
struct Word {
    QString text;
    QRectF place;
};

/// The words of a document in the order of its text, which is what `pdftotext -bbox` says of it.
inline std::vector<Word> WordsIn(const QString& text)
{
    static const QRegularExpression word(
        "<word xMin=\"(.+)\" yMin=\"(.+)\" xMax=\"(.+)\" yMax=\"(.+)\">(.*)</word>");
    std::vector<Word> words;
    for (auto at = word.globalMatch(text); at.hasNext();) {
        const auto match = at.next();
        const QPointF from(match.captured(1).toDouble(), match.captured(2).toDouble());
        const QPointF to(match.captured(3).toDouble(), match.captured(4).toDouble());
        words.push_back({match.captured(5), QRectF(from, to)});
    }
    return words;
}
