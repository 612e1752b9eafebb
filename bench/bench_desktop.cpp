// SPDX-License-Identifier: GPL-3.0-or-later
// What the person at the table waits for, in the real main window, up to the last pixel.
#include "Table.h"

#include "data/NewDataSet.h"
#include "shell/frmVelt3.h"
#include "support/FillWizard.h"
#include "views/DataGridView.h"
#include "views/GridWidget.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QTemporaryDir>

#include <fstream>

namespace
{
/// The main window and a user without questions.
struct Desk {
    Desk()
    {
        window.resize(1600, 1000);
        window.show();
    }
    void Give(const char* command) { window.Command(QString::fromLatin1(command)); }
    /// Everything that waits to be drawn is drawn.
    static void Draw() { QCoreApplication::processEvents(); }

    ScriptedUser user;
    frmVelt3 window{&user};
};

void NewTable(Desk& desk)
{
    desk.user.onNewDataSet = [](NewDataSet& wanted) {
        wanted = {.FileDescription = "Bench",
                  .MinTimeP = 1001,
                  .MaxTimeP = 1200,
                  .columns = {1, 2, 3, 4, 5, 6, 7, 8, 9}};
        return true;
    };
    desk.Give("mnuNew");
}

/// 200 rows, all 15 columns and 200 boxes.
void GridRebuild(benchmark::State& state)
{
    Desk desk;
    NewTable(desk);
    auto& data = const_cast<clsVeltData&>(desk.window.objData());
    for (int column = columns::kFirst; column <= columns::kLast; ++column) {
        data.ColPresent(column, true);
        for (int row = 1; row <= clsVeltData::kRows; ++row)
            data.DB(column, row, static_cast<float>(row) * 1.37F * static_cast<float>(column));
    }
    desk.Give("mnuEditMode");
    for (auto _ : state) {
        desk.window.SetUpDataGrid();
        desk.window.repaint();
        Desk::Draw();
    }
}
BENCHMARK(GridRebuild)->Unit(benchmark::kMillisecond);

void Paste200x9(benchmark::State& state)
{
    Desk desk;
    NewTable(desk);
    double next = 1.0;
    for (auto _ : state) {
        state.PauseTiming(); // other values each time, so that every cell changes
        QString text;
        for (int row = 0; row < 200; ++row)
            for (int col = 0; col < 9; ++col)
                text += QString::number(next += 0.25) + (col < 8 ? "\t" : "\r\n");
        QGuiApplication::clipboard()->setText(text);
        state.ResumeTiming();
        desk.Give("mnuPaste");
        desk.window.repaint();
        Desk::Draw();
    }
}
BENCHMARK(Paste200x9)->Unit(benchmark::kMillisecond);

/// The longest series that can be fitted, as a text to import.
std::string LongSeries()
{
    constexpr int kPeriods = 199;
    const BenchModel stock(models::kConstantRecruitment, 1, kPeriods);
    std::string text = "A long series\nYear Effort Catch Total\n";
    for (int row = 1; row <= kPeriods; ++row)
        text += std::to_string(1800 + row) + " " + std::to_string(stock.data.Effort(row)) + " " +
                std::to_string(stock.data.CatchNums(row)) + " " +
                std::to_string(stock.data.TotCatchNums(row)) + "\n";
    return text;
}

/// A period goes out of the fit and comes back with all graphs of a fit on 199 periods open.
void TogglePoint(benchmark::State& state)
{
    const QTemporaryDir folder;
    const QString path = folder.filePath("table.txt");
    std::ofstream(path.toStdString()) << LongSeries();
    Desk desk;
    desk.user.onAsciiWizard = FillWizard;
    desk.window.OpenPath(path);
    desk.user.ChoosesFit("CONSTANT", 1);
    desk.Give("mnuNewModel");
    if (!desk.window.objMeth().MethDefined())
        state.SkipWithError("there is no fit");
    desk.window.Toggles().ToggleInGrid(100); // which takes the fit away, once
    Desk::Draw();
    for (auto _ : state) {
        desk.window.Toggles().ToggleInGrid(100);
        Desk::Draw();
    }
    state.counters["graphs"] = static_cast<double>(desk.window.Graphs().UserTitles().size());
}
BENCHMARK(TogglePoint)->Unit(benchmark::kMillisecond);
} // namespace

int main(int argc, char* argv[])
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
