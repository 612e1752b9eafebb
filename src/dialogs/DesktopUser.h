// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/Ports.h"

#include <QObject>
#include <QPointer>

class QMessageBox;
class QWidget;

/// The person at the screen: questions become modal boxes and dialogs over the main window.
class DesktopUser : public IUser
{
public:
    /// `parent`: the window the boxes stand over; it must outlive this object.
    explicit DesktopUser(QWidget* parent);
    /// What shows the manual; it must outlive the last question. Until there is one, Help buttons do nothing.
    void HelpBy(IHelpViewer& help) { m_help = &help; }

    Answer Show(const Message& message) override;
    std::optional<std::string> InputBox(const std::string& prompt, const std::string& title,
                                        const std::string& suggestion) override;
    std::optional<std::string> AskFileToOpen(const FileQuestion& question) override;
    std::optional<std::string> AskFileToSave(const FileQuestion& question) override;
    bool AskSelection(Selection& selection) override;
    bool AskRange(RangeQuestion& question) override;
    bool AskInputParams(InputParams& params) override;
    bool AskStartVals(StartVals& starts) override;
    bool AskContourRange(ContourRange& range) override;
    bool AskOptions(MinimiserOptions& options) override;
    bool AskAsciiWizard(AsciiWizard& wizard) override;
    bool AskListPicker(ListPicker& picker) override;
    bool AskNumberFormat(NumberFormatChoice& choice) override;
    bool AskFont(CellFont& font) override;
    bool AskNewDataSet(NewDataSet& wanted) override;
    void ShowHelp(const std::string& topic) override;

private:
    void NoteWindowInFront();
    QWidget* Over();
    void AddHelpButton(QMessageBox& box, const Message& message);

    QWidget* m_parent;
    QPointer<QWidget> m_inFront; ///< the last active window that is no box
    QObject m_watch;             ///< its connections end with this object
    IHelpViewer* m_help = nullptr;
};
