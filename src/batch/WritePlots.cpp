// SPDX-License-Identifier: GPL-3.0-or-later
#include "batch/WritePlots.h"

#include "base/VeltError.h"
#include "batch/BatchFailure.h"
#include "views/ContourPainter.h"
#include "views/GraphPainter.h"

#include <QApplication>

#include <cctype>
#include <cstdio>
#include <filesystem>
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

template <typename Save>
void SaveBoth(const std::string& directory, std::size_t number, const std::string& title, Save save)
{
    char prefix[24];
    std::snprintf(prefix, sizeof prefix, "%02zu-", number);
    for (const char* ending : {".png", ".svg"}) {
        const auto path = std::filesystem::path(directory) / (prefix + FileWords(title) + ending);
        try {
            if (!save(QString::fromStdString(path.string())))
                throw BatchFailure(ExitStatus::BadUsage, "--plots: " + path.string() + " cannot be drawn.");
        } catch (const VeltError& error) {
            throw BatchFailure(ExitStatus::BadUsage, "--plots: " + error.description);
        }
    }
}

void SaveContours(const ContourRecord& contours, std::size_t number, const std::string& directory)
{
    std::vector<ContourStep> path;
    for (const ContourRecord::Step& step : contours.path)
        path.push_back({step.fromX, step.fromY, step.toX, step.toY});
    std::vector<ContourMarkAt> marks;
    for (const ContourRecord::Mark& mark : contours.marks)
        marks.push_back({mark.kind, mark.x, mark.y});
    SaveBoth(directory, number, "contours",
             [&](const QString& file) { return SaveContourPicture(contours.surface, path, marks, file); });
}
} // namespace

bool CanDraw()
{
    return true;
}

void WritePlots(const BatchWindow& window, const std::string& directory)
{
    HaveApplication();
    std::size_t number = 0;
    for (const std::shared_ptr<ModelGraph>& graph : window.graphs)
        SaveBoth(directory, ++number, graph->Title(),
                 [&](const QString& path) { return SaveGraphPicture(*graph, path); });
    if (window.contours)
        SaveContours(*window.contours, ++number, directory);
}
