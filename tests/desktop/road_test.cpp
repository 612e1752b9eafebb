// SPDX-License-Identifier: GPL-3.0-or-later
// The whole road of a user through the program's own windows and dialogs: a data set is typed, others are
// imported, each model is fitted, bootstrapped, logged, projected, saved, opened again, exported and printed.
#include "desktop/AskProgram.h"
#include "desktop/Hands.h"
#include "shell/frmVelt3.h"
#include "views/DataGridView.h"
#include "views/GridWidget.h"
#include "views/frmFitManager.h"
#include "views/frmParams.h"
#include "views/frmProjGraph.h"
#include "views/frmProjections.h"

#include <QAction>
#include <QClipboard>
#include <QFile>
#include <QMenuBar>
#include <QRegularExpression>
#include <QSettings>
#include <QTemporaryDir>
#include <QtTest>

#include <nlohmann/json.hpp>

namespace
{
/// A stock with the model and the error model that suit it, and the ranges of its estimates.
struct Stock {
    const char* sample;                   ///< name of its accepted ranges
    const char* model;                    ///< as the list of models begins
    const char* error;                    ///< object name of the button of the error model
    std::map<QString, QString> columns;   ///< heading of the file to title of the column
    std::map<const char*, QString> boxes; ///< what is entered beside the defaults
    std::map<QString, const char*> names; ///< in the report, to those of the ranges
};

const std::map<QString, QString> kNumbers{
    {"Effort", "Effort"}, {"Catch", "Catch Nums"}, {"Total", "Tot. Catch Nums"}};
const std::map<QString, QString> kWeights{
    {"Effort", "Effort"}, {"Catch", "Catch Wt"}, {"Total", "Tot. Catch Wt"}};
const std::map<QString, const char*> kProduction{{"K", "K"}, {"q", "Q"}, {"r", "R"}, {"M.S.Y.", "MSY"}};

std::map<QString, QString> With(std::map<QString, QString> columns, const char* heading, const char* title)
{
    columns[heading] = title;
    return columns;
}

const std::vector<Stock> kStocks{
    {"recidx24_m2_e2",
     "RECRUITMENT",
     "optLogT",
     With(With(kNumbers, "Recruits", "Recruit. Index"), "Var", "Var. Abund. Index"),
     {{"txtMort", "0.4"}},
     {{"N1", "N1"}, {"q", "Q"}, {"Lambda", "Lambda"}}},
    {"const25_m3_e3", "CONSTANT", "optGamma", kNumbers, {{"txtMort", "0.3"}}, {{"K", "K"}, {"q", "Q"}}},
    {"fox28_m4_e2", "PROD. MODEL(FOX", "optLogT", kWeights, {{"txtInitProp", "0.9"}}, kProduction},
    {"schaefer30_m5_e1", "PROD. MODEL(SCH", "optLSQ", kWeights, {}, kProduction},
    {"pella32_lag1_m6_e1",
     "PROD. MODEL(PELLA",
     "optLSQ",
     kWeights,
     {{"txtLag", "1"}, {"txtZ", "2"}},
     kProduction},
};

/// The bass of a lake: catch and traps of ten periods (Omand 1951).
struct Period {
    const char* caught;
    const char* traps;
};
constexpr std::array<Period, 10> kBass{{{"131", "7"},
                                        {"69", "7"},
                                        {"99", "7"},
                                        {"78", "7"},
                                        {"56", "7"},
                                        {"76", "7"},
                                        {"49", "7"},
                                        {"42", "7"},
                                        {"63", "7"},
                                        {"47", "7"}}};

/// The program with a person's hands at its own dialogs.
struct Desk {
    Desk()
    {
        QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, folder.filePath("settings"));
        hands.fill["frmNumberFormat"] = [](QDialog& form) { form.reject(); };
        window.show();
    }
    QString Path(const QString& name) const { return folder.filePath(name); }
    void Give(const char* command)
    {
        auto* entry = window.menuBar()->findChild<QAction*>(QString::fromLatin1(command));
        QVERIFY2(entry->isEnabled(), command);
        entry->trigger();
    }
    QString ReportText()
    {
        window.findChild<frmParams*>()->findChild<QAction*>("actCopyReport")->trigger();
        return QGuiApplication::clipboard()->text();
    }
    /// What the report says, by the names on its left; of a name that comes twice the first, its estimate.
    std::map<QString, QString> Report()
    {
        static const QRegularExpression parted("\\s{2,}|\\t");
        std::map<QString, QString> lines;
        for (const QString& line : ReportText().split('\n')) {
            const QStringList cells = line.trimmed().split(parted);
            if (cells.size() > 1)
                lines.emplace(cells.front(), cells.back());
        }
        return lines;
    }
    /// Fits this model under this error model with these entries.
    void Fit(const QString& model, const char* error, const std::map<const char*, QString>& boxes)
    {
        hands.fill["SelectionDialog"] = [=](QDialog& form) {
            Hands::Pick(form, "lstItems", model);
            Hands::Click(form, "cmdOK");
        };
        hands.fill["frmInputParams"] = [=](QDialog& form) {
            Hands::Click(form, error);
            for (const auto& [box, text] : boxes)
                Hands::Enter(form, box, text);
            Hands::Click(form, "cmdOK");
        };
        Give("mnuNewModel");
    }
    void Bootstrap()
    {
        hands.fill["RangeDialog"] = [](QDialog& form) { Hands::Click(form, "cmdOK"); };
        Give("mnuGenerateConfInts");
    }
    void Log(const QString& name)
    {
        Give("mnuFitManager");
        hands.names.push_back(name);
        Hands::Click(*window.findChild<frmFitManager*>(), "cmdAdd");
    }
    /// Loads the first logged fit.
    void Load()
    {
        Give("mnuFitManager");
        Hands::Click(*window.findChild<frmFitManager*>(), "cmdLoad");
    }
    void TypeKeys(const char* text)
    {
        for (const char* key = text; *key != 0; ++key)
            QTest::keyClick(QApplication::focusWidget(), *key);
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Down); // Enter would stay on the cell
    }
    GridWidget& Grid() { return window.findChild<DataGridView*>()->Grid(); }
    PrinterChoice Pdf(const QString& path)
    {
        return [path](QWidget*, const QString& title) {
            auto printer = NewPrinter(title);
            printer->setOutputFormat(QPrinter::PdfFormat);
            printer->setOutputFileName(path);
            return printer;
        };
    }

    QTemporaryDir folder;
    Hands hands;
    frmVelt3 window;
};

/// Assigns the columns of the table that the wizard shows.
void AssignColumns(QDialog& form, const std::map<QString, QString>& wanted, const QString& file)
{
    QFile table(file);
    QVERIFY(table.open(QIODevice::ReadOnly));
    table.readLine();
    const QStringList headings = QString::fromLatin1(table.readLine()).simplified().split(' ');
    auto& grid = Hands::Child<QTableView>(form, "grdText");
    grid.selectColumn(0);
    Hands::Click(form, "cmdNext");
    for (qsizetype column = 1; column < headings.size(); ++column) {
        grid.setCurrentIndex(grid.model()->index(0, static_cast<int>(column)));
        auto& choices = Hands::Child<QComboBox>(form, "cboDBCols");
        const auto title = wanted.find(headings[column]);
        const int choice = title == wanted.end() ? 0 : choices.findText(title->second);
        QVERIFY2(choice >= 0, qPrintable(headings[column]));
        choices.setCurrentIndex(choice);
        emit choices.activated(choice);
    }
    Hands::Click(form, "cmdFinish");
}

nlohmann::json Ranges(const char* sample)
{
    QFile file(QStringLiteral(VELT_TEST_SAMPLES "/expected/%1.json").arg(sample));
    return file.open(QIODevice::ReadOnly) ? nlohmann::json::parse(file.readAll().toStdString())
                                          : nlohmann::json();
}

void CheckEstimates(Desk& desk, const Stock& stock)
{
    const auto report = desk.Report();
    const auto estimates = Ranges(stock.sample).at("Estimates");
    for (const auto& [shown, name] : stock.names) {
        QVERIFY2(report.contains(shown), qPrintable(shown));
        const double value = report.at(shown).toDouble();
        const QString said = QStringLiteral("%1: %2 = %3").arg(stock.sample, shown).arg(value);
        QVERIFY2(value >= estimates.at(name).at(0).get<double>(), qPrintable(said));
        QVERIFY2(value <= estimates.at(name).at(1).get<double>(), qPrintable(said));
    }
}

void NewDataSetOfBass(Desk& desk)
{
    desk.hands.files.push_back(desk.Path("bass.vl3"));
    desk.hands.fill["frmNewFile"] = [](QDialog& form) {
        Hands::Enter(form, "txtDescription", "Bass of a lake");
        Hands::Enter(form, "TxtTimeP0", "1");
        Hands::Enter(form, "TxtTimeP1", QString::number(kBass.size()));
        Hands::Move(form, {"Tot. Catch Nums", "Effort"});
        Hands::Click(form, "cmdOK");
    };
    desk.Give("mnuNew");
}
} // namespace

class RoadTest : public QObject
{
    Q_OBJECT

private slots:
    void ATypedDataSetIsFittedLoggedSavedOpenedLoadedExportedAndPrinted()
    {
        Desk desk;
        NewDataSetOfBass(desk);
        QVERIFY(desk.window.FileOpen());
        QApplication::setActiveWindow(&desk.window);
        QVERIFY(QTest::qWaitForWindowActive(&desk.window));
        desk.Grid().setFocus();
        for (int column : {2, 3}) {
            desk.Grid().Select(GridSelection::At(1, column));
            for (const Period& period : kBass)
                desk.TypeKeys(column == 2 ? period.caught : period.traps);
        }
        desk.Give("mnuEditMode");
        QVERIFY(desk.window.objData().ColPresent(columns::CatchNums)); // the catch follows from the total

        desk.Fit("NO RECR", "optLSQ", {{"txtMort", "0"}});
        // By hand (Leslie): catch per trap against the catch before the period and half of its own.
        const auto report = desk.Report();
        QVERIFY2(report.contains("N1"), qPrintable(desk.ReportText() + desk.hands.said.join('|')));
        QVERIFY2(std::abs(report.at("N1").toDouble() - LeslieStock()) < 1e-4 * LeslieStock(),
                 qPrintable(report.at("N1")));
        desk.Bootstrap();
        const QString withLimits = desk.ReportText();
        desk.Log("Leslie");
        desk.Give("mnuSave");
        desk.Give("mnuClose");
        QVERIFY(!desk.window.FileOpen());

        desk.hands.files.push_back(desk.Path("bass.vl3"));
        desk.Give("mnuOpen");
        desk.Load();
        QCOMPARE(desk.ReportText(), withLimits);

        desk.hands.files.push_back(desk.Path("bass.txt"));
        desk.Give("mnuTextExport");
        QFile text(desk.Path("bass.txt"));
        QVERIFY(text.open(QIODevice::ReadOnly));
        QVERIFY(text.readAll().contains("131"));

        desk.window.Printer().ChosenBy(desk.Pdf(desk.Path("table.pdf")));
        desk.Give("mnuPrint");
        QVERIFY(Ask("pdftotext", {"-layout", desk.Path("table.pdf"), "-"}).contains("Bass of a lake"));
        desk.window.Printer().ChosenBy(desk.Pdf(desk.Path("report.pdf")));
        Hands::Click(*desk.window.findChild<frmParams*>(), "cmdPrint");
        QVERIFY(Ask("pdftotext", {"-layout", desk.Path("report.pdf"), "-"}).contains(report.at("N1")));
        PlotWindow* graph = desk.window.Graphs().WindowAt(0);
        graph->PrinterChosenBy(desk.Pdf(desk.Path("graph.pdf")));
        graph->findChild<QAction*>("PrintGraph")->trigger();
        QVERIFY(Ask("pdftotext", {desk.Path("graph.pdf"), "-"}).contains("Expected and Observed CPUE"));
        desk.window.close();
        QVERIFY(!desk.window.isVisible());
    }

    void EachModelIsFittedUnderAnErrorModelThatSuitsIt_data()
    {
        QTest::addColumn<int>("number");
        for (std::size_t i = 0; i < kStocks.size(); ++i)
            QTest::newRow(kStocks[i].sample) << static_cast<int>(i);
    }

    void EachModelIsFittedUnderAnErrorModelThatSuitsIt()
    {
        QFETCH(const int, number);
        const Stock& stock = kStocks[static_cast<std::size_t>(number)];
        const QString table = QStringLiteral(VELT_TEST_SAMPLES "/expected/") +
                              QString::fromStdString(Ranges(stock.sample).at("data").get<std::string>());
        Desk desk;
        desk.hands.fill["frmASCIIWizard"] = [&](QDialog& form) { AssignColumns(form, stock.columns, table); };
        desk.hands.files = {table, desk.Path("stock.vl3")};
        desk.Give("mnuOpen");
        desk.Fit(stock.model, stock.error, stock.boxes);
        CheckEstimates(desk, stock);
        desk.Bootstrap();
        const QString before = desk.ReportText();
        desk.Log("First");
        desk.Give("mnuSave");
        desk.Give("mnuClose");
        desk.hands.files.push_back(desk.Path("stock.vl3"));
        desk.Give("mnuOpen");
        desk.Load();
        QCOMPARE(desk.ReportText(), before);
        CheckEstimates(desk, stock);
        Project(desk, QString::fromLatin1(stock.model) != "RECRUITMENT");
        desk.window.close();
    }

private:
    /// One scenario without effort in it: everything is left in the sea.
    static void Project(Desk& desk, bool possible)
    {
        desk.Give("mnuViewProj");
        auto* editor = desk.window.findChild<frmProjections*>();
        QVERIFY(editor->isVisible());
        auto* entry = desk.window.menuBar()->findChild<QAction*>("mnuProject");
        QCOMPARE(entry->isEnabled(), possible);
        if (!possible)
            return;
        desk.hands.fill["ListPickerDialog"] = [](QDialog& form) {
            Hands::Move(form, {"Scenario1"});
            Hands::Click(form, "cmdOK");
        };
        entry->trigger();
        const std::size_t last = desk.window.Graphs().UserTitles().size() - 1;
        QVERIFY(qobject_cast<frmProjGraph*>(desk.window.Graphs().WindowAt(last)) != nullptr);
    }

    /// The stock before the first period of kBass by a straight line through catch per effort over removals,
    /// which are those before the period and half of its own: where the line reaches zero.
    static double LeslieStock()
    {
        double removed = 0.0;
        double n = 0.0, sumX = 0.0, sumY = 0.0, sumXX = 0.0, sumXY = 0.0;
        for (const Period& period : kBass) {
            const double caught = QByteArray(period.caught).toDouble();
            const double x = removed + caught / 2.0;
            const double y = caught / QByteArray(period.traps).toDouble();
            removed += caught;
            n += 1.0;
            sumX += x;
            sumY += y;
            sumXX += x * x;
            sumXY += x * y;
        }
        const double slope = (n * sumXY - sumX * sumY) / (n * sumXX - sumX * sumX);
        return -(sumY - slope * sumX) / n / slope;
    }
};

QTEST_MAIN(RoadTest)
#include "road_test.moc"
