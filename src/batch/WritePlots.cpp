// SPDX-License-Identifier: GPL-3.0-or-later
#include "batch/WritePlots.h"

#include "batch/BatchFailure.h"
#include "views/ContourPainter.h"
#include "views/GraphPainter.h"
#include "views/ProjectionPainter.h"

#include <QApplication>

#include <cctype>
#include <cstdio>
#include <memory>

namespace
{
/// Remarks of Qt about the desktop that is not there do not concern the user of a command.
void DropRemarks(QtMsgType type, const QMessageLogContext& /*context*/, const QString& text)
{
    if (type == QtCriticalMsg || type == QtFatalMsg)
        std::fprintf(stderr, "%s\n", qPrintable(text));
}

/// Qt draws text only inside an application; one without a screen will do.
void HaveApplication()
{
    if (QCoreApplication::instance() != nullptr)
        return;
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qInstallMessageHandler(DropRemarks);
    static int argc = 1;
    static char name[] = "velt-batch";
    static char* argv[] = {name, nullptr};
    static const QApplication application(argc, argv);
}

/// "Expected and Observed CPUE" as "expected-and-observed-cpue".
std::string FileWords(const std::string& title)
{
    std::string words;
    for (const char c : title) {
        if (std::isalnum(static_cast<unsigned char>(c)) != 0)
            words += static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
        else if (!words.empty() && words.back() != '-')
            words += '-';
    }
    while (words.ends_with('-'))
        words.pop_back();
    return words;
}

template <typename Draw>
void AddBoth(std::vector<ResultFile>& pictures, std::size_t number, const std::string& title, Draw draw)
{
    char prefix[24];
    std::snprintf(prefix, sizeof prefix, "%02zu-", number);
    for (const char* ending : {"png", "svg"}) {
        const std::string name = prefix + FileWords(title) + "." + ending;
        const QByteArray bytes = draw(QString::fromLatin1(ending));
        if (bytes.isEmpty())
            throw BatchFailure(ExitStatus::BadUsage, "--plots: " + name + " cannot be drawn.");
        pictures.push_back({name, bytes.toStdString()});
    }
}

void AddContours(std::vector<ResultFile>& pictures, const ContourRecord& contours, std::size_t number)
{
    std::vector<ContourStep> path;
    for (const ContourRecord::Step& step : contours.path)
        path.push_back({step.fromX, step.fromY, step.toX, step.toY});
    std::vector<ContourMarkAt> marks;
    for (const ContourRecord::Mark& mark : contours.marks)
        marks.push_back({mark.kind, mark.x, mark.y, mark.after});
    AddBoth(pictures, number, "contours",
            [&](const QString& ending) { return DrawContourPicture(contours.surface, path, marks, ending); });
}
} // namespace

bool CanDraw()
{
    return true;
}

std::vector<ResultFile> PicturesOf(const BatchWindow& window)
{
    HaveApplication();
    std::vector<ResultFile> pictures;
    std::size_t number = 0;
    for (const std::shared_ptr<ModelGraph>& graph : window.graphs)
        AddBoth(pictures, ++number, graph->Title(),
                [&](const QString& ending) { return DrawGraphPicture(*graph, ending); });
    for (const std::shared_ptr<ProjGraph>& graph : window.projections)
        AddBoth(pictures, ++number, graph->Title(),
                [&](const QString& ending) { return DrawProjectionPicture(*graph, ending); });
    if (window.contours)
        AddContours(pictures, *window.contours, ++number);
    return pictures;
}
