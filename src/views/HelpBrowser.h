// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QTextBrowser>

class HelpLibrary;

/// Shows the pages of the manual and remembers the way through them. Addresses of other places go to the
/// user's own browser; it fetches nothing itself.
class HelpBrowser : public QTextBrowser
{
    Q_OBJECT

public:
    /// `library` must outlive the browser.
    explicit HelpBrowser(const HelpLibrary& library, QWidget* parent = nullptr);

    QVariant loadResource(int type, const QUrl& name) override;

    /// Goes to the next place of `text` behind the cursor, or before it, and on from the other end of the
    /// page. \return false when the page does not have it
    bool Find(const QString& text, bool backward);

public slots:
    // Between half and three times the size of the other windows' text.
    void Larger() { SizeBy(1); }
    void Smaller() { SizeBy(-1); }
    void UsualSize() { SizeBy(-m_steps); }

protected:
    void doSetSource(const QUrl& name, QTextDocument::ResourceType type) override;
    void wheelEvent(QWheelEvent* event) override;

private:
    void SizeBy(int steps);

    const HelpLibrary& m_library;
    int m_steps = 0; ///< points above the usual size of the text
};
