// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/Ports.h"
#include "views/AskPrinter.h"

/// Prints lines of text on the printer that the user chooses, in the system's font of equally wide characters
/// so that columns stand below one another.
class DesktopPrinter : public IPrinter
{
public:
    /// `window`: over which the dialog appears when no other window is in front; it must outlive this object.
    explicit DesktopPrinter(QWidget& window) : m_window(window) {}

    std::unique_ptr<IPrintout> Open(const std::string& title) override;

    /// Lets `choice` choose in place of the dialog.
    void ChosenBy(PrinterChoice choice) { m_choice = std::move(choice); }

private:
    QWidget& m_window;
    PrinterChoice m_choice = AskPrinter;
};
