// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QPrinter>
#include <QString>

#include <functional>
#include <memory>

class QWidget;

/// Who chooses the printer for a document of that title: the person at the screen, or a test.
/// \return null for Cancel \throws PrinterFault there is none to print on
using PrinterChoice = std::function<std::unique_ptr<QPrinter>(QWidget* over, const QString& title)>;

/// The system's print dialog over the window `over`.
std::unique_ptr<QPrinter> AskPrinter(QWidget* over, const QString& title);

/// A printer set up for a document of this program, before the user has had a say: margins, name.
std::unique_ptr<QPrinter> NewPrinter(const QString& title);
