// SPDX-License-Identifier: GPL-3.0-or-later
#include "views/HelpLibrary.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QDir>
#include <QEventLoop>
#include <QFile>
#include <QHelpEngine>
#include <QHelpSearchEngine>
#include <QTextStream>
#include <utility>

namespace
{
const QString kCompiled = QStringLiteral("velt.qch");
const QString kTopics = QStringLiteral("contexts.txt");
const QString kFirstPage = QStringLiteral("index.html");

QString Said(const char* text)
{
    return QCoreApplication::translate("HelpLibrary", text);
}

QString NotFound(const QString& path)
{
    return Said(
               "The manual is not installed: there is no file\n%1\n\nInstall VELT again, or, where you built "
               "it yourself, build all of it.")
        .arg(QDir::toNativeSeparators(path));
}

QString Damaged(const QString& path, const QString& why)
{
    return Said("The manual cannot be read:\n%1\n%2\n\nInstall VELT again.")
        .arg(QDir::toNativeSeparators(path), why);
}

QString NoRoom(const QStringList& places)
{
    return Said("The manual cannot be opened, because VELT cannot write to any of these folders:\n%1\n\nMake "
                "room on the disk, or ask for the right to write there.")
        .arg(QDir::toNativeSeparators(places.join('\n')));
}
} // namespace

QString HelpLibrary::UsualFolder()
{
    const QDir program(QCoreApplication::applicationDirPath());
    QString first;
    for (const char* folder : {VELT_HELP_INSTALLED, "help"}) {
        QString path = QDir::cleanPath(program.filePath(QString::fromUtf8(folder)));
        if (QFile::exists(path + '/' + kCompiled))
            return path;
        if (first.isEmpty())
            first = path;
    }
    return first;
}

HelpLibrary::HelpLibrary(const QString& folder, const QStringList& places)
{
    const QString compiled = folder + '/' + kCompiled;
    if (!QFile::exists(compiled)) {
        m_failure = NotFound(compiled);
        return;
    }
    m_root = "qthelp://" + QHelpEngineCore::namespaceName(compiled) + "/manual/";
    Open(compiled, places);
    ReadTopics(folder + '/' + kTopics);
}

/// The engine may go only when its search has ended: it does not wait for the thread in time.
HelpLibrary::~HelpLibrary()
{
    constexpr int kLongest = 10000; // ms; a search takes some
    m_next.clear();
    QEventLoop turns;
    const QDeadlineTimer end(kLongest);
    while (m_searches && !end.hasExpired())
        turns.processEvents(QEventLoop::ExcludeUserInputEvents);
}

/// A place may take a folder and yet have no room for the collection, so each is tried to the end.
void HelpLibrary::Open(const QString& compiled, const QStringList& places)
{
    for (const QString& place : places) {
        m_scratch = std::make_unique<HelpScratch>(place);
        if (m_scratch->IsValid() && OpenIn(m_scratch->Path(QStringLiteral("velt.qhc")), compiled)) {
            m_failure.clear();
            return;
        }
        m_engine.reset();
    }
    if (m_failure.isEmpty())
        m_failure = NoRoom(places);
}

bool HelpLibrary::OpenIn(const QString& collection, const QString& compiled)
{
    {
        QHelpEngineCore maker(collection);
        maker.setReadOnly(false);
        if (!maker.setupData())
            return false;
        if (!maker.registerDocumentation(compiled)) {
            m_failure = Damaged(compiled, maker.error());
            return false;
        }
    }
    m_engine = std::make_unique<QHelpEngine>(collection);
    // Has to listen to the set-up, which starts the work on its index.
    QObject::connect(m_engine->searchEngine(), &QHelpSearchEngine::searchingFinished, m_engine.get(),
                     [this] { OnSearched(); });
    return m_engine->setupData();
}

/// Without the list every topic opens the first page.
void HelpLibrary::ReadTopics(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text))
        return;
    QTextStream lines(&file);
    QString line;
    while (lines.readLineInto(&line)) {
        const QStringList words = line.simplified().split(' ');
        if (words.size() == 2)
            m_pages.insert(words[0], words[1]);
    }
}

QUrl HelpLibrary::Address(const QString& page) const
{
    return QUrl(m_root + page);
}

QUrl HelpLibrary::Page(const std::string& topic) const
{
    return Address(m_pages.value(QString::fromStdString(topic), kFirstPage));
}

/// The engine loses the end of a search that another one overtakes.
void HelpLibrary::Search(const QString& words)
{
    if (m_searches) {
        m_next = words;
        return;
    }
    m_searches = true;
    m_engine->searchEngine()->search(words);
}

void HelpLibrary::OnSearched()
{
    m_searches = false;
    if (!m_next.isEmpty())
        Search(std::exchange(m_next, {}));
}

QByteArray HelpLibrary::Bytes(const QUrl& address) const
{
    return m_engine->fileData(m_engine->findFile(address.adjusted(QUrl::RemoveFragment)));
}
