// SPDX-License-Identifier: GPL-3.0-or-later
#include "views/OverviewPage.h"

#include "base/VeltError.h"
#include "files/WholeFile.h"
#include "graphs/ModelGraph.h"
#include "graphs/ProjGraph.h"
#include "toolkit/Words.h"
#include "views/GraphPainter.h"
#include "views/PlotPicture.h"
#include "views/PlotStyle.h"
#include "views/ProjectionPainter.h"

#include <QAbstractTextDocumentLayout>
#include <QBuffer>
#include <QFileInfo>
#include <QFontMetricsF>
#include <QPrinter>
#include <QTextDocument>

#include <cmath>
#include <map>

namespace
{
constexpr double kA4Short = 210.0 / 25.4; // inches
constexpr double kA4Long = 297.0 / 25.4;
constexpr double kMargin = 12.0 / 25.4;
constexpr double kHeadingFactor = 1.25;
// Of a graph that is still readable, in heights of a letter: as small as its own window may be.
constexpr double kLeastWide = 22.0;
constexpr double kLeastHigh = 15.0;
// Captions of the report.
constexpr int kModelText = 1869;
constexpr int kFitText = 1868;
constexpr int kRSqrText = 1865;
constexpr int kInputsText = 802;
constexpr int kEstimatesText = 803;
constexpr int kIntervalsText = 804;

int Dpi()
{
    return QCustomPlot().logicalDpiX();
}

double Em()
{
    return QFontMetricsF(plot_style::Font()).height();
}

QString Shown(const std::string& text)
{
    return QString::fromStdString(text).trimmed().toHtmlEscaped();
}

QString RowOf(const QString& name, const QString& value)
{
    return "<tr><td>" + name + "</td><td align=\"right\">" + value + "</td></tr>";
}

QString BlockOf(const QString& heading, const QString& beside, const std::vector<ParameterReport::Row>& rows)
{
    if (rows.empty())
        return {};
    QString text = RowOf("<b>" + heading + "</b>", beside);
    for (const ParameterReport::Row& row : rows)
        text += RowOf(Shown(row.name), Shown(row.value));
    return text;
}

QString ReportText(const ParameterReport& report)
{
    QString text = "<table width=\"100%\" cellspacing=\"0\" cellpadding=\"1\">";
    text += RowOf(Words(kModelText).toHtmlEscaped(), "<b>" + Shown(report.modelTitle) + "</b>");
    text += RowOf(Words(kFitText).toHtmlEscaped(), "<b>" + Shown(report.fitTitle) + "</b>");
    text += RowOf(Words(kRSqrText).toHtmlEscaped(), "<b>" + Shown(report.rSqr) + "</b>");
    text += BlockOf(Words(kInputsText).toHtmlEscaped(), {}, report.inputs);
    text += BlockOf(Words(kEstimatesText).toHtmlEscaped(), {}, report.estimates);
    text += BlockOf(Words(kIntervalsText).toHtmlEscaped(), Shown(report.intervalLevels), report.intervals);
    text += "</table>";
    if (!report.remarks.empty())
        text += "<p style=\"margin-bottom:0\"><b>" + QString(ParameterReport::kRemarksHeading) + "</b></p>";
    for (const std::string& remark : report.remarks)
        text += "<p style=\"margin-top:0; margin-bottom:0\">" + Shown(remark) + "</p>";
    return text;
}

QString HeadText(const Overview& overview)
{
    QString text = "<div><b>" + Shown(overview.dataSet) + "</b></div>";
    if (overview.report)
        text +=
            "<div>" + Shown(overview.report->modelTitle) + ", " + Shown(overview.report->fitTitle) + "</div>";
    return text;
}

/// A text that takes the width it is given.
class Block
{
public:
    Block(const QString& html, double fontFactor)
    {
        m_text.setDocumentMargin(0.0);
        m_text.setDefaultFont(plot_style::Font(fontFactor));
        m_text.setHtml(html);
    }
    double HeightAt(double width)
    {
        const int whole = static_cast<int>(width); // so that few widths are ever laid out
        const auto [known, isNew] = m_heights.try_emplace(whole, 0.0);
        if (isNew) {
            m_text.setTextWidth(whole);
            known->second = std::ceil(m_text.size().height());
        }
        return known->second;
    }
    void Draw(QPainter& painter, const QRectF& place)
    {
        m_text.setTextWidth(static_cast<int>(place.width()));
        painter.save();
        painter.translate(place.topLeft());
        QAbstractTextDocumentLayout::PaintContext ink;
        ink.palette.setColor(QPalette::Text, plot_style::kInk); // on white, whatever the windows look like
        m_text.documentLayout()->draw(&painter, ink);
        painter.restore();
    }

private:
    QTextDocument m_text;
    std::map<int, double> m_heights;
};

/// The texts of a page.
struct Texts {
    explicit Texts(const Overview& overview) : head(HeadText(overview), kHeadingFactor)
    {
        if (overview.report)
            report = std::make_unique<Block>(ReportText(*overview.report), 1.0);
    }
    Block head;
    std::unique_ptr<Block> report;
};

PageGrid GridFor(const Overview& overview, Texts& texts, QSizeF between)
{
    PageWants wants{.page = between,
                    .graphs = static_cast<int>(overview.graphs.size()),
                    .leastGraph = {kLeastWide * Em(), kLeastHigh * Em()},
                    .gap = Em(),
                    .headHeight = [&](double width) { return texts.head.HeightAt(width); },
                    .textHeight = {}};
    if (texts.report)
        wants.textHeight = [&](double width) { return texts.report->HeightAt(width); };
    return LayOutPage(wants);
}

QSizeF Between(QSize page, int margin)
{
    return QSizeF(page.shrunkBy(QMargins(margin, margin, margin, margin)));
}

void Paint(QCustomPlot& plot, const ModelGraph& graph)
{
    ModelGraph quiet = graph; // a light belongs to the hand at the screen
    quiet.StopInterrogate();
    PaintGraph(plot, quiet);
}

void Paint(QCustomPlot& plot, const ProjGraph& graph)
{
    PaintProjection(plot, graph);
}

/// A title that is wider than the graph gets smaller letters.
void FitTitle(QCustomPlot& plot, double width)
{
    auto* title = qobject_cast<QCPTextElement*>(plot.plotLayout()->element(0, 0));
    const double wide = QFontMetricsF(title->font()).horizontalAdvance(title->text());
    if (wide <= width)
        return;
    QFont font = title->font();
    font.setPointSizeF(font.pointSizeF() * width / wide);
    title->setFont(font);
}

void DrawGraph(QCPPainter& painter, const AnyGraph& graph, const QRectF& place)
{
    const QRect whole(place.topLeft().toPoint(), QSizeF(place.size()).toSize());
    QCustomPlot plot;
    std::visit([&](const auto& which) { Paint(plot, *which); }, graph);
    plot_style::FitLegend(plot, whole.width());
    FitTitle(plot, whole.width());
    painter.save();
    painter.translate(whole.topLeft());
    plot.toPainter(&painter, whole.width(), whole.height());
    painter.restore();
}

QByteArray DrawPng(const Drawing& drawing)
{
    constexpr double kInchesPerMetre = 1.0 / 0.0254;
    QImage image(drawing.size * kPictureScale, QImage::Format_RGB32);
    if (!DrawVectors(drawing, image, kPictureScale))
        return {};
    // Only now: letters are measured by it.
    const int dots = static_cast<int>(std::lround(drawing.dpi * kPictureScale * kInchesPerMetre));
    image.setDotsPerMeterX(dots);
    image.setDotsPerMeterY(dots);
    image.setText(QStringLiteral("Software"), QStringLiteral("VELT 3.0"));
    QBuffer picture;
    picture.open(QIODevice::WriteOnly);
    return image.save(&picture, "PNG") ? picture.data() : QByteArray();
}

int Margin()
{
    return static_cast<int>(std::lround(kMargin * Dpi()));
}
} // namespace

QSize overview_page::PageFor(const Overview& overview)
{
    const int dpi = Dpi();
    const QSize upright = (QSizeF(kA4Short, kA4Long) * dpi).toSize();
    Texts texts(overview);
    const auto scale = [&](QSize page) { return GridFor(overview, texts, Between(page, Margin())).scale; };
    return scale(upright) > scale(upright.transposed()) ? upright : upright.transposed();
}

PageGrid overview_page::GridOf(const Overview& overview, QSize page, int margin)
{
    Texts texts(overview);
    return GridFor(overview, texts, Between(page, margin));
}

Drawing overview_page::DrawingOf(const Overview& overview, QSize page, int margin)
{
    const auto paint = [&overview, page, margin](QCPPainter& painter) {
        Texts texts(overview);
        const PageGrid grid = GridFor(overview, texts, Between(page, margin));
        painter.translate(margin, margin);
        painter.scale(grid.scale, grid.scale);
        texts.head.Draw(painter, grid.head);
        if (texts.report)
            texts.report->Draw(painter, grid.text);
        for (std::size_t i = 0; i < overview.graphs.size(); ++i)
            DrawGraph(painter, overview.graphs[i], grid.graphs[i]);
    };
    return {.title = QString::fromStdString(overview.dataSet), .size = page, .dpi = Dpi(), .paint = paint};
}

Drawing overview_page::DrawingOf(const Overview& overview)
{
    return DrawingOf(overview, PageFor(overview), Margin());
}

bool overview_page::Save(const Overview& overview, const QString& path)
{
    const QString ending = QFileInfo(path).suffix().toLower();
    const Drawing drawing = DrawingOf(overview);
    const QByteArray bytes = ending == "png" ? DrawPng(drawing) : DrawDocument(drawing, ending);
    if (!bytes.isEmpty())
        ReplaceFile(path.toStdString(), {bytes.constData(), static_cast<std::size_t>(bytes.size())});
    return !bytes.isEmpty();
}

void overview_page::Print(const Overview& overview, QPrinter& printer)
{
    printer.setResolution(Dpi());
    const Drawing drawing = DrawingOf(overview, QSize(printer.width(), printer.height()), 0);
    if (!DrawVectors(drawing, printer) || printer.printerState() == QPrinter::Error)
        throw PrinterFault(
            "The printer did not take the page. Where it goes to a file, please choose a folder "
            "that you may write to.");
}
