// SPDX-License-Identifier: GPL-3.0-or-later
#include "views/AskPrinter.h"

#include "base/VeltError.h"

#include <QPrintDialog>

std::unique_ptr<QPrinter> NewPrinter(const QString& title)
{
    auto printer = std::make_unique<QPrinter>(QPrinter::HighResolution);
    printer->setPageMargins(QMarginsF(20.0, 15.0, 20.0, 15.0), QPageLayout::Millimeter);
    printer->setDocName(title);
    printer->setCreator(QStringLiteral("VELT 3.0"));
    return printer;
}

std::unique_ptr<QPrinter> AskPrinter(QWidget* over, const QString& title)
{
    std::unique_ptr<QPrinter> printer = NewPrinter(title);
    QPrintDialog dialog(printer.get(), over);
    // Documents are printed whole: nobody knows how many pages they will have before they are printed.
    dialog.setOptions(QAbstractPrintDialog::PrintToFile | QAbstractPrintDialog::PrintShowPageSize |
                      QAbstractPrintDialog::PrintCollateCopies);
    if (dialog.exec() != QDialog::Accepted)
        return nullptr;
    if (!printer->isValid())
        throw PrinterFault("There is no printer. Please install one in the settings of your system.");
    return printer;
}
