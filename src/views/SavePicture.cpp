// SPDX-License-Identifier: GPL-3.0-or-later
#include "views/SavePicture.h"

#include "base/VeltError.h"

#include <QFileDialog>
#include <QMessageBox>
#include <QObject>

namespace
{
QString FilterOf(const QString& ending)
{
    if (ending == "png")
        return QObject::tr("PNG picture (*.png)");
    return ending == "svg" ? QObject::tr("SVG drawing (*.svg)") : QObject::tr("PDF document (*.pdf)");
}

/// ".png, .svg or .pdf"
QString Listed(const QStringList& endings)
{
    QString text = "." + endings.mid(0, endings.size() - 1).join(", .");
    return text + QObject::tr(" or .") + endings.last();
}
} // namespace

void AskAndSavePicture(QWidget& parent, const QString& title, const QString& suggestion,
                       const QStringList& endings, const std::function<bool(const QString& path)>& save)
{
    QFileDialog dialog(&parent, title);
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    QStringList filters;
    for (const QString& ending : endings)
        filters += FilterOf(ending);
    dialog.setNameFilters(filters);
    // The ending is added inside the dialog, which then asks before it replaces a file of that name.
    dialog.setDefaultSuffix(endings.first());
    QObject::connect(&dialog, &QFileDialog::filterSelected, &dialog, [&dialog](const QString& filter) {
        dialog.setDefaultSuffix(filter.section("*.", 1).chopped(1));
    });
    dialog.selectFile(suggestion);
    if (dialog.exec() != QDialog::Accepted)
        return;
    const QString path = dialog.selectedFiles().constFirst();
    const auto warn = [&parent](const QString& text) {
        QMessageBox::warning(&parent, QObject::tr("VELT 3.0"), text);
    };
    try {
        if (!save(path))
            warn(QObject::tr("%1\nhas no name of a picture. Please choose one that ends in %2.")
                     .arg(path, Listed(endings)));
    } catch (const VeltError& error) {
        warn(QObject::tr("%1\nPlease choose a folder that you may write to and that has room.")
                 .arg(QString::fromStdString(error.description)));
    }
}
