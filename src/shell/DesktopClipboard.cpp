// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/DesktopClipboard.h"

#include "base/NumberText.h"
#include "data/PasteBlock.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>

namespace
{
constexpr const char* kExactFormat = "application/x-velt-cells";

/// The block as a table. Spreadsheets take the value of a cell from its attributes: "sdval" in the
/// LibreOffice family, "x:num" in Excel.
QString HtmlOf(const std::string& displayed, const std::string& exact)
{
    const PasteBlock shown = ReadPasteBlock(displayed);
    const PasteBlock values = ReadPasteBlock(exact);
    QString html("<html><head><meta charset=\"utf-8\"></head><body><table>");
    for (std::size_t i = 0; i < shown.rows.size(); ++i) {
        html += "<tr>";
        for (std::size_t j = 0; j < shown.rows[i].size(); ++j) {
            const std::string& value = values.rows[i][j];
            const QString text = QString::fromStdString(shown.rows[i][j]).toHtmlEscaped();
            html +=
                number_text::Parse(value)
                    ? QStringLiteral("<td align=\"right\" sdval=\"%1\" sdnum=\"1033;\" x:num=\"%1\">%2</td>")
                          .arg(QString::fromStdString(value), text)
                    : QStringLiteral("<td>%1</td>").arg(text);
        }
        html += "</tr>";
    }
    return html + "</table></body></html>";
}
} // namespace

bool DesktopClipboard::HasText() const
{
    const QMimeData* content = QGuiApplication::clipboard()->mimeData();
    return content && content->hasText();
}

std::string DesktopClipboard::Text() const
{
    const QMimeData* content = QGuiApplication::clipboard()->mimeData();
    if (!content)
        return {};
    return content->hasFormat(kExactFormat) ? content->data(kExactFormat).toStdString()
                                            : content->text().toStdString();
}

void DesktopClipboard::Text(const std::string& text)
{
    QGuiApplication::clipboard()->setText(QString::fromStdString(text));
}

void DesktopClipboard::Block(const std::string& displayed, const std::string& exact)
{
    auto* content = new QMimeData; // the clipboard takes it over
    content->setText(QString::fromStdString(displayed));
    content->setHtml(HtmlOf(displayed, exact));
    content->setData(kExactFormat, QByteArray::fromStdString(exact));
    QGuiApplication::clipboard()->setMimeData(content);
}
