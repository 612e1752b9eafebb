// SPDX-License-Identifier: GPL-3.0-or-later
#include "views/DesktopPrinter.h"

#include "base/VeltError.h"

#include <QApplication>
#include <QFile>
#include <QFontDatabase>
#include <QFontMetricsF>
#include <QPainter>

namespace
{
constexpr double kPoints = 9.0; // five columns of the listing on A4 upright, eight across

QFont PrintFont()
{
    QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    font.setStyleHint(QFont::Monospace);
    font.setPointSizeF(kPoints);
    return font;
}

/// `line` with blanks in place of tabs, up to the next stop, and of what no paper can show.
QString Shown(const std::string& line)
{
    QString shown;
    for (const QChar c : QString::fromStdString(line)) {
        if (c == '\t')
            shown += QString(IPrintout::kTabStop - shown.size() % IPrintout::kTabStop, ' ');
        else
            shown += c.isPrint() || c.isSurrogate() ? c : QChar(' ');
    }
    return shown;
}

/// The painting begins with the first line: a document that is dropped before leaves no empty page.
class Printout : public IPrintout
{
public:
    explicit Printout(std::unique_ptr<QPrinter> printer)
        : m_printer(std::move(printer)), m_metrics(PrintFont(), m_printer.get())
    {
    }
    ~Printout() override;
    Printout(const Printout&) = delete;
    Printout& operator=(const Printout&) = delete;

    double TextWidth(const std::string& line) const override
    {
        return m_metrics.horizontalAdvance(Shown(line));
    }
    double PrintableWidth() const override { return m_printer->width(); }
    void CurrentX(double x) override { m_x = x; }
    void Bold(bool on) override { m_bold = on; }
    void Print(const std::string& line) override;
    void NewPage() override;
    void End() override;

private:
    void Begin();

    std::unique_ptr<QPrinter> m_printer; // before the painter, which must go first
    QFontMetricsF m_metrics;
    QPainter m_painter;
    double m_x = 0.0;
    double m_y = 0.0; ///< top of the next line
    bool m_bold = false;
};

Printout::~Printout()
{
    if (!m_painter.isActive())
        return;
    m_printer->abort();
    m_painter.end();
    if (!m_printer->outputFileName().isEmpty())
        QFile::remove(m_printer->outputFileName()); // half a document is worse than none
}

void Printout::Begin()
{
    if (!m_painter.isActive() && !m_painter.begin(m_printer.get()))
        throw PrinterFault("The document could not be started. Where it goes to a file, please choose a "
                           "folder that you may write to.");
}

void Printout::Print(const std::string& line)
{
    Begin();
    if (m_y + m_metrics.height() > m_printer->height())
        NewPage();
    QFont font = PrintFont();
    font.setBold(m_bold);
    m_painter.setFont(font);
    m_painter.drawText(QPointF(m_x, m_y + m_metrics.ascent()), Shown(line));
    m_x = 0.0;
    m_y += m_metrics.lineSpacing();
}

void Printout::NewPage()
{
    Begin();
    if (!m_printer->newPage())
        throw PrinterFault("The printer took no further page.");
    m_y = 0.0;
}

void Printout::End()
{
    Begin();
    const bool complete = m_painter.end();
    if (!complete || m_printer->printerState() == QPrinter::Error)
        throw PrinterFault("The printer did not take the whole document.");
}
} // namespace

std::unique_ptr<IPrintout> DesktopPrinter::Open(const std::string& title)
{
    QWidget* const active = QApplication::activeWindow();
    auto printer = m_choice(active ? active : &m_window, QString::fromStdString(title));
    return printer ? std::make_unique<Printout>(std::move(printer)) : nullptr;
}
