// SPDX-License-Identifier: GPL-3.0-or-later
#include "views/HelpBrowser.h"

#include "views/HelpLibrary.h"

#include <QDesktopServices>
#include <QRegularExpression>
#include <QTextCursor>
#include <QWheelEvent>
#include <algorithm>

namespace
{
const QString kScheme = QStringLiteral("qthelp");
constexpr int kMostSteps = 16;
constexpr int kFewestSteps = -4;

/// The text document loses the blank between two comments.
QString WithoutComments(const QByteArray& page)
{
    static const QRegularExpression comment(QStringLiteral("<!--.*?-->"),
                                            QRegularExpression::DotMatchesEverythingOption);
    return QString::fromUtf8(page).remove(comment);
}
} // namespace

HelpBrowser::HelpBrowser(const HelpLibrary& library, QWidget* parent)
    : QTextBrowser(parent), m_library(library)
{
    setObjectName("txtPage");
    setAccessibleName(tr("Page of the manual"));
}

QVariant HelpBrowser::loadResource(int type, const QUrl& name)
{
    const QUrl whole = source().resolved(name);
    if (whole.scheme() != kScheme)
        return {};
    const QByteArray bytes = m_library.Bytes(whole);
    if (bytes.isEmpty() && type == QTextDocument::HtmlResource)
        return tr("<h1>There is no such page</h1><p>The manual has no page %1.</p>")
            .arg(whole.toString().toHtmlEscaped());
    return type == QTextDocument::HtmlResource ? QVariant(WithoutComments(bytes)) : QVariant(bytes);
}

void HelpBrowser::doSetSource(const QUrl& name, QTextDocument::ResourceType type)
{
    if (source().resolved(name).scheme() == kScheme)
        QTextBrowser::doSetSource(name, type);
    else
        QDesktopServices::openUrl(name);
}

bool HelpBrowser::Find(const QString& text, bool backward)
{
    const QTextDocument::FindFlags flags =
        backward ? QTextDocument::FindBackward : QTextDocument::FindFlags();
    if (find(text, flags))
        return true;
    const QTextCursor before = textCursor();
    moveCursor(backward ? QTextCursor::End : QTextCursor::Start);
    if (find(text, flags))
        return true;
    setTextCursor(before);
    return false;
}

void HelpBrowser::SizeBy(int steps)
{
    const int wanted = std::clamp(m_steps + steps, kFewestSteps, kMostSteps);
    zoomIn(wanted - m_steps);
    m_steps = wanted;
}

void HelpBrowser::wheelEvent(QWheelEvent* event)
{
    if (event->modifiers() & Qt::ControlModifier) {
        if (event->angleDelta().y() != 0)
            SizeBy(event->angleDelta().y() > 0 ? 1 : -1); // as the keys do, so that Ctrl+0 leads back
        event->accept();
        return;
    }
    QTextBrowser::wheelEvent(event);
}
