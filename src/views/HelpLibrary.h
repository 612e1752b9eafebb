// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "views/HelpScratch.h"

#include <QByteArray>
#include <QHash>
#include <QString>
#include <QUrl>

#include <memory>
#include <string>

class QHelpEngine;

/// The manual: its pages, contents and index in one compiled file, and beside it the list of topics, a line
/// each ("68 options.html#defaults"). It shows nothing.
class HelpLibrary
{
public:
    /// `folder`: where both files stand; `places`: where the help engine may write, in this order.
    explicit HelpLibrary(const QString& folder, const QStringList& places = HelpScratch::UsualPlaces());
    ~HelpLibrary();
    HelpLibrary(const HelpLibrary&) = delete;
    HelpLibrary& operator=(const HelpLibrary&) = delete;

    /// Where this program's manual stands: beside the program in a build, in the folder for data in an
    /// installation. The first of the two when there is none.
    static QString UsualFolder();

    /// Why there is no manual, in words for the user and with what to do; empty when there is one. Nothing
    /// below may then be called.
    const QString& Failure() const { return m_failure; }

    QHelpEngine& Engine() const { return *m_engine; }
    /// The page of a topic; the first page for a topic that the list does not have.
    QUrl Page(const std::string& topic) const;
    /// What stands at an address of the manual; empty where there is nothing.
    QByteArray Bytes(const QUrl& address) const;
    /// Starts a search, once the one before has ended; the engine's search engine says when it has.
    void Search(const QString& words);

private:
    void Open(const QString& compiled, const QStringList& places);
    bool OpenIn(const QString& collection, const QString& compiled);
    void OnSearched();
    void ReadTopics(const QString& path);
    QUrl Address(const QString& page) const;

    QString m_failure;
    QString m_root; ///< what all addresses of the manual begin with
    QHash<QString, QString> m_pages;
    bool m_searches = false;
    QString m_next; ///< to be searched for then
    std::unique_ptr<HelpScratch> m_scratch;
    std::unique_ptr<QHelpEngine> m_engine; ///< behind the folder: it writes there to its end
};
