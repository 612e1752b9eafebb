// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/Ports.h"
#include "views/HelpLibrary.h"
#include "views/HelpWindow.h"

#include <QObject>
#include <memory>

/// Opens the manual: at the contents, at the topic of a Help button, and on F1 at the topic of the window in
/// front, whichever it is and also while a dialog is open. The manual is looked for when it is first asked
/// for.
class HelpCommands : public QObject, public IHelpViewer
{
    Q_OBJECT

public:
    /// `user` is told when there is no manual, and must outlive this object.
    explicit HelpCommands(IUser& user);
    ~HelpCommands() override;
    Q_DISABLE_COPY_MOVE(HelpCommands)

    void ShowTopic(const std::string& topic) override;
    /// The first page.
    void ShowContents();
    /// The manual does not keep the program running.
    void Close();

    /// What F1 opens over `widget`: what the nearest window says around it, or in front of which it stands.
    static std::string TopicOf(const QWidget* widget);

    /// Looks for the manual in `folder` and lets its engine write to `places`, for tests.
    void LookIn(const QString& folder, const QStringList& places);
    HelpWindow* Window() const { return m_window.get(); }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    bool MayOpen();

    IUser& m_user;
    QString m_folder = HelpLibrary::UsualFolder();
    QStringList m_places = HelpScratch::UsualPlaces();
    bool m_telling = false; ///< that there is no manual
    std::unique_ptr<HelpLibrary> m_library;
    std::unique_ptr<HelpWindow> m_window;
};
