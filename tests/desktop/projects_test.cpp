// SPDX-License-Identifier: GPL-3.0-or-later
// Projects through the real main window: the File menu, the questions before work would be lost, the fit log.
#include "data/CellFont.h"
#include "data/NumberFormat.h"
#include "desktop/Session.h"
#include "files/ScratchFolder.h"
#include "fit/ProjectFile.h"
#include "views/frmFitManager.h"

#include <QFile>
#include <QFont>
#include <QHeaderView>
#include <QMimeData>
#include <QPushButton>
#include <QTableWidget>
#include <QTemporaryDir>

#include <array>
#include <filesystem>

namespace
{
namespace fs = std::filesystem;

const std::string kLegacySample = VELT_TEST_SAMPLES "/legacy/old_good.vl2";

/// The imported sample, open and saved as "stock.vl3" in a folder of its own.
struct Saved : Session {
    Saved()
    {
        user.filesToSave = {Path("stock.vl3")};
        Open();
        user.messages.clear();
        user.asked.clear();
    }
    std::string Path(const char* name) const
    {
        return folder.filePath(QString::fromLatin1(name)).toStdString();
    }
    QByteArray Bytes(const char* name = "stock.vl3") const
    {
        QFile file(QString::fromStdString(Path(name)));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    bool Dirty() { return window.objData().IsDirty(); }
    void Reopen() { window.OpenPath(QString::fromStdString(Path("stock.vl3"))); }
    /// A change of the data set that no other rule has anything to do with.
    void Change(const char* description = "Changed")
    {
        user.inputs = {std::string(description)};
        Entry("mnuFileDescription")->trigger();
    }
    frmFitManager* Manager() { return window.findChild<frmFitManager*>(); }
    QPushButton* Button(const char* name)
    {
        return Manager()->findChild<QPushButton*>(QString::fromLatin1(name));
    }
    QTableWidget* Fits() { return Manager()->findChild<QTableWidget*>("grdFits"); }
    QString Count() { return Manager()->findChild<QLabel*>("lblMsg")->text(); }
    void Log(const char* name)
    {
        Entry("mnuFitManager")->trigger();
        user.inputs = {std::string(name)};
        Button("cmdAdd")->click();
    }
    void TakeFolderAway() { QVERIFY(QFile::rename(folder.path(), folder.path() + "_gone")); }
    void BringFolderBack() { QVERIFY(QFile::rename(folder.path() + "_gone", folder.path())); }

    QTemporaryDir folder;
};

std::vector<fs::path> WorkingFolders()
{
    std::vector<fs::path> found;
    for (const auto& entry : fs::directory_iterator(fs::temp_directory_path()))
        if (entry.path().filename().string().starts_with("velt-project-"))
            found.push_back(entry.path());
    return found;
}
} // namespace

class projects_test : public QObject
{
    Q_OBJECT

private slots:
    void AnImportLeadsToSaveAsAndBecomesAProject()
    {
        Saved s;
        QVERIFY(s.Bytes().startsWith(QByteArray("\0\4\0\10\6\11ORVO\3", 11)));
        QVERIFY(!s.Dirty());
        QCOMPARE(s.window.windowTitle(), QString("VELT 3.0 - stock.vl3 - Constant recruitment, 25 years"));
        QCOMPARE(QString::fromStdString(s.user.saveQuestions.back().filter), QString("VELT3 (*.vl3)"));
        QVERIFY(QString::fromStdString(s.user.saveQuestions.back().suggestion).endsWith("const25.VL3"));
        QVERIFY(s.Entry("mnuSave")->isEnabled() && s.Entry("mnuSaveAs")->isEnabled());
    }

    void ACancelledSaveAsAfterAnImportLeavesTheDataOpenAndTheNextSaveAsksAgain()
    {
        Session s;
        s.Open();
        QVERIFY(s.user.asked.back() == "file to save");
        QVERIFY(s.window.FileOpen());
        QVERIFY(QString::fromStdString(s.window.objData().DSFName()).endsWith("const25.txt"));
        s.user.asked.clear();
        s.Entry("mnuSave")->trigger();
        QVERIFY(s.user.asked.back() == "file to save");
        QVERIFY(s.window.objData().IsDirty());
    }

    void ANameWithoutTheEndingGetsIt()
    {
        Saved s;
        s.user.filesToSave = {s.Path("other")};
        s.Entry("mnuSaveAs")->trigger();
        QVERIFY(!s.Bytes("other.vl3").isEmpty());
        QCOMPARE(s.window.objData().DSFName(), s.Path("other.vl3"));
    }

    void AProjectOfVersion2LeadsToSaveAsAndOpensAgainEqual()
    {
        Saved s;
        s.user.filesToSave = {s.Path("from_old.vl3")};
        s.user.files = {kLegacySample};
        s.Entry("mnuOpen")->trigger();
        QVERIFY(s.user.messages.empty());
        QCOMPARE(QString::fromStdString(s.user.openQuestions.back().filter),
                 QString("Projects and tables (*.vl3 *.vl2 *.txt *.csv);;Velt 3.0 (*.vl3);;Velt 2.0 (*.vl2);;"
                         "Text (*.txt);;Comma-separated (*.csv)"));
        QVERIFY(s.window.FileOpen());
        QVERIFY(!s.Dirty());
        QCOMPARE(QString::fromStdString(s.user.saveQuestions.back().suggestion),
                 QString::fromStdString(std::string(VELT_TEST_SAMPLES) + "/legacy/old_good.VL3"));
        QCOMPARE(s.window.windowTitle(),
                 QString("VELT 3.0 - from_old.vl3 - Scallop survey 1970-89 (old project)"));
        QCOMPARE(s.Grid().Rows(), 21); // 20 periods under a row of titles
        const clsVeltData before = s.window.objData();
        s.Entry("mnuClose")->trigger();
        s.window.OpenPath(QString::fromStdString(s.Path("from_old.vl3")));
        const clsVeltData& after = s.window.objData();
        for (int column = columns::kFirst; column <= columns::kLastUser; ++column)
            if (before.ColPresent(column))
                QVERIFY2(after.ColPresent(column) && after.Column(column) == before.Column(column),
                         std::to_string(column).c_str());
        QCOMPARE(after.DSDesc(), before.DSDesc());
        QCOMPARE(after.TimeInts(), 20);
        QCOMPARE(after.NumLoggedRuns(), 2);
        QCOMPARE(after.NumProjScenarios(), 2);
        for (int i = 1; i <= clsProjScenario::kPoints; ++i)
            QCOMPARE(after.ProjScenario(2)->Vector(i), before.ProjScenario(2)->Vector(i));
    }

    void ACancelledSaveAsAfterAProjectOfVersion2LeavesItOpenAndTheNextSaveAsksAgain()
    {
        Session s;
        s.window.OpenPath(QString::fromStdString(kLegacySample));
        QVERIFY(s.user.asked.back() == "file to save");
        QVERIFY(s.window.FileOpen());
        QVERIFY(s.window.objData().IsDirty());
        QCOMPARE(QString::fromStdString(s.window.objData().DSFName()), QString::fromStdString(kLegacySample));
        QVERIFY(s.window.windowTitle().contains("old_good.vl2"));
        s.user.asked.clear();
        s.Entry("mnuSave")->trigger();
        QVERIFY(s.user.asked.back() == "file to save");
    }

    void AProjectOfVersion2ThatIsDamagedIsToldAndNoSaveAsFollows()
    {
        Saved s;
        const std::string path = s.Path("damaged.vl2");
        QVERIFY(QFile::copy(QString::fromStdString(kLegacySample), QString::fromStdString(path)));
        QFile file(QString::fromStdString(path));
        QVERIFY(file.resize(5000));
        s.window.OpenPath(QString::fromStdString(path));
        QVERIFY(s.user.Saw("Unable to Import VELT 2.0 File, Bad File Format."));
        QVERIFY(s.user.Saw("Byte 4999 of the file: the file ends within \"Vector of a scenario\""));
        QCOMPARE(QString::fromStdString(s.user.messages.back().title), QString("Import Error"));
        QVERIFY(s.user.asked.empty());
        QVERIFY(!s.Dirty());
        QCOMPARE(s.window.objData().TimeInts(), 0);
        QCOMPARE(s.Panel("Status"), QString("Ready..."));
    }

    void AProjectOfVersion2WithAnotherVersionByteIsNotRecognised()
    {
        Session s;
        s.window.OpenPath(QString(VELT_TEST_SAMPLES) + "/legacy/bad_version3.vl2");
        QVERIFY(s.user.Saw("File type not recognised."));
        QVERIFY(!s.window.FileOpen());
    }

    void TextExportAsksForANameAndWritesTheTable()
    {
        Saved s;
        const QByteArray project = s.Bytes();
        s.user.filesToSave = {s.Path("table.txt")};
        s.Entry("mnuTextExport")->trigger();
        const FileQuestion& asked = s.user.saveQuestions.back();
        QCOMPARE(QString::fromStdString(asked.filter), QString("ASCII Text (*.txt)"));
        QCOMPARE(QString::fromStdString(asked.title), QString("Text Export"));
        QCOMPARE(QString::fromStdString(asked.suggestion), QString::fromStdString(s.Path("stock.txt")));
        QCOMPARE(QString::fromStdString(asked.ending), QString("txt"));
        QCOMPARE(s.user.messages.size(), std::size_t{1});
        QVERIFY(s.user.Saw("File Exported Successfully to ASCII file " + s.Path("table.txt")));
        const QByteArray text = s.Bytes("table.txt");
        QVERIFY(text.startsWith("Constant recruitment, 25 years\r\nTime\t"));
        QCOMPARE(text.count("\r\n"), 27);
        QCOMPARE(s.Bytes(), project); // the project and its state are as they were
        QVERIFY(!s.Dirty());
        QCOMPARE(s.window.objData().DSFName(), s.Path("stock.vl3"));
    }

    void ATextExportIsImportedAgainAsTheSameTable()
    {
        Saved s;
        s.user.filesToSave = {s.Path("table.txt"), s.Path("again.vl3")};
        s.Entry("mnuTextExport")->trigger();
        const clsVeltData before = s.window.objData();
        s.user.onAsciiWizard = [&](AsciiWizard& wizard) {
            wizard.ChooseTiming(1);
            wizard.Next();
            for (int i = 2; i <= wizard.TextColumns(); ++i)
                for (int column = columns::kFirst; column <= columns::kLastUser; ++column)
                    if (wizard.collFlexHeadings[static_cast<std::size_t>(i - 1)] ==
                        before.TheRun().globals.ColumnFileNames(column))
                        wizard.Assign(i, column);
            wizard.Finish();
            return true;
        };
        s.window.OpenPath(QString::fromStdString(s.Path("table.txt")));
        const clsVeltData& after = s.window.objData();
        QCOMPARE(after.DSFName(), s.Path("again.vl3"));
        QCOMPARE(after.DSDesc(), before.DSDesc());
        QCOMPARE(after.MinTimeP(), before.MinTimeP());
        QCOMPARE(after.TimeInts(), before.TimeInts());
        for (int column = columns::kFirst; column <= columns::kLastUser; ++column) {
            QCOMPARE(after.ColPresent(column), before.ColPresent(column));
            for (int row = 1; row <= before.TimeInts(); ++row)
                QCOMPARE(after.DB(column, row), before.DB(column, row));
        }
    }

    void ACancelledTextExportWritesNothingAndANameWithoutTheEndingGetsIt()
    {
        Saved s;
        s.Entry("mnuTextExport")->trigger(); // no name is given
        QVERIFY(s.user.messages.empty());
        s.user.filesToSave = {s.Path("stock.vl3")}; // it must not replace the project
        s.Entry("mnuTextExport")->trigger();
        QVERIFY(s.Bytes().contains("ORVO"));
        QVERIFY(s.Bytes("stock.vl3.txt").startsWith("Constant recruitment"));
        s.user.messages.clear();
        s.user.answers = {Answer::Cancel};
        s.user.filesToSave = {s.Path("stock.vl3")}; // and is asked about once that stands there
        s.Entry("mnuTextExport")->trigger();
        QCOMPARE(s.user.messages.size(), std::size_t{1});
        QVERIFY(s.user.Saw("already exists"));
    }

    void ATextExportThatFailsIsAFileErrorAndTheWindowStaysUsable()
    {
        Saved s;
        s.user.filesToSave = {s.Path("missing/table.txt")};
        s.user.answers = {Answer::Cancel};
        s.Entry("mnuTextExport")->trigger();
        QVERIFY(s.user.Saw("That path doesn't exist."));
        QCOMPARE(QString::fromStdString(s.user.messages.back().title), QString("File Error"));
        QVERIFY(s.Entry("mnuTextExport")->isEnabled());
    }

    void TextExportNeedsADataSetAndIsGreyInEditMode()
    {
        Session empty;
        QVERIFY(!empty.Entry("mnuTextExport")->isEnabled());
        Saved s;
        QVERIFY(s.Entry("mnuTextExport")->isEnabled());
        s.Entry("mnuEditMode")->trigger();
        QVERIFY(!s.Entry("mnuTextExport")->isEnabled());
    }

    void SavingWritesTheChangeAndOpeningBringsItBack()
    {
        Saved s;
        s.Change();
        QVERIFY(s.Dirty());
        s.Entry("mnuSave")->trigger();
        QVERIFY(!s.Dirty());
        s.Entry("mnuClose")->trigger();
        QVERIFY(s.user.messages.empty()); // nothing to save
        QVERIFY(!s.window.FileOpen());
        s.user.files = {s.Path("stock.vl3")};
        s.Entry("mnuOpen")->trigger();
        QVERIFY(s.window.FileOpen());
        QVERIFY(!s.Dirty());
        QCOMPARE(s.window.windowTitle(), QString("VELT 3.0 - stock.vl3 - Changed"));
        QCOMPARE(s.Grid().Rows(), 26);
        QCOMPARE(s.Value(1, 2), 9172.47F);
    }

    void TheFontOfAColumnIsNotSavedAndItsNumberFormatIs()
    {
        Saved s;
        const QFont plain = s.Grid().model()->index(0, 3).data(Qt::FontRole).value<QFont>();
        s.Go(1, 3); // effort
        s.user.onFont = [](CellFont& font) {
            font = {.name = "Sans", .size = 30.0, .bold = true, .italic = true};
            return true;
        };
        s.Entry("mnuFormat")->trigger();
        s.user.onNumberFormat = [](NumberFormatChoice& choice) {
            choice = {.category = NumberCategory::Scientific, .decPlaces = 2};
            return true;
        };
        s.Entry("mnuNumber")->trigger();
        QVERIFY(s.Grid().model()->index(0, 3).data(Qt::FontRole).value<QFont>() != plain);
        s.Entry("mnuSave")->trigger();
        s.Reopen();
        QCOMPARE(s.window.objData().ColFormat(columns::Effort), std::string("0.00E+"));
        QCOMPARE(s.Shown(1, 3), QString("1.09E+02")); // 109.3
        QCOMPARE(s.Grid().model()->index(0, 3).data(Qt::FontRole).value<QFont>(), plain);
    }

    void ClosingWithUnsavedDataAndCancelLeavesItOpenSoThatNewAndOpenStopSilently()
    {
        Saved s;
        s.Change();
        for (const char* command : {"mnuClose", "mnuNew", "mnuOpen"}) {
            s.user.messages.clear();
            s.user.asked.clear();
            s.user.answers = {Answer::Cancel};
            s.Entry(command)->trigger();
            QCOMPARE(s.user.messages.size(), std::size_t{1});
            QCOMPARE(s.user.messages.back().buttons, Buttons::YesNoCancel);
            QCOMPARE(s.user.messages.back().icon, Icon::Exclamation);
            QVERIFY(s.user.asked.empty());
            QVERIFY(s.window.FileOpen());
        }
    }

    void ClosingWithYesSavesAndWithNoDoesNot()
    {
        Saved s;
        const QByteArray before = s.Bytes();
        s.Change();
        s.user.answers = {Answer::No};
        s.Entry("mnuClose")->trigger();
        QCOMPARE(s.Bytes(), before);
        s.Reopen();
        s.Change();
        s.user.answers = {Answer::Yes};
        s.Entry("mnuClose")->trigger();
        QVERIFY(s.Bytes().contains("Changed"));
        QVERIFY(!s.window.FileOpen());
    }

    void ClosingTheWindowWithYesAndThenCancellingTheSaveAsKeepsTheProgramRunning()
    {
        Session s;
        s.Open();
        s.user.answers = {Answer::Yes};
        s.window.close();
        QVERIFY(s.user.asked.back() == "file to save");
        QVERIFY(s.window.isVisible());
        QVERIFY(s.window.FileOpen());
        s.user.answers = {Answer::Yes}; // and so does Close
        s.Entry("mnuClose")->trigger();
        QVERIFY(s.window.FileOpen());
    }

    void ASaveThatFailsIsToldAndTheDataSetStaysChangedUnderItsName()
    {
        Saved s;
        s.Change();
        s.user.filesToSave = {s.Path("missing/stock.vl3")};
        s.Entry("mnuSaveAs")->trigger();
        QVERIFY(s.user.Saw("cannot be written"));
        QVERIFY(s.Dirty());
        QCOMPARE(s.window.objData().DSFName(), s.Path("stock.vl3"));
        QVERIFY(!s.Bytes().contains("Changed"));
        s.Entry("mnuSave")->trigger(); // where it was it can still be saved
        QVERIFY(s.Bytes().contains("Changed"));
    }

    void AProjectThatSomebodyElseChangedOnDiskIsReplacedOnlyOnYes()
    {
        Saved s;
        s.Change();
        QFile file(QString::fromStdString(s.Path("stock.vl3")));
        QVERIFY(file.open(QIODevice::Append));
        file.write("from elsewhere");
        file.close();
        s.user.messages.clear();
        s.user.answers = {Answer::No};
        s.Entry("mnuSave")->trigger();
        QVERIFY(s.user.Saw("was changed since it was opened here"));
        QVERIFY(s.Bytes().endsWith("from elsewhere"));
        QVERIFY(s.Dirty());
        s.user.answers = {Answer::Yes};
        s.Entry("mnuSave")->trigger();
        QVERIFY(!s.Bytes().endsWith("from elsewhere"));
        QVERIFY(!s.Dirty());
    }

    void AProjectThatWasRemovedFromDiskIsWrittenAnew()
    {
        Saved s;
        s.Change();
        QVERIFY(QFile::remove(QString::fromStdString(s.Path("stock.vl3"))));
        s.Entry("mnuSave")->trigger();
        QVERIFY(s.user.messages.empty());
        QVERIFY(s.Bytes().contains("Changed"));
    }

    void ADamagedProjectSaysAtWhichByteAndLeavesNoDataSetOpen()
    {
        Saved s;
        QFile file(QString::fromStdString(s.Path("stock.vl3")));
        QVERIFY(file.resize(500));
        s.window.OpenPath(file.fileName());
        QVERIFY(s.user.Saw("ReadObj Failure."));
        QVERIFY(s.user.Saw("Byte "));
        QVERIFY(!s.window.FileOpen());
        QCOMPARE(s.Panel("Status"), QString("Ready..."));
        QVERIFY(s.Entry("mnuOpen")->isEnabled());
    }

    void AProjectOpenInAnotherProgramIsNoticedAndOpenedOnlyOnYes()
    {
        Saved s;
        Session other; // holds a working copy of its own, as another program does
        other.user.answers = {Answer::No};
        other.window.OpenPath(QString::fromStdString(s.Path("stock.vl3")));
        QVERIFY(other.user.Saw("Another VELT on this computer has this project open"));
        QVERIFY(!other.window.FileOpen());
        other.user.answers = {Answer::Yes};
        other.window.OpenPath(QString::fromStdString(s.Path("stock.vl3")));
        QVERIFY(other.window.FileOpen());
    }

    void TheRecentFilesStandUnderOpenTheLatestFirst()
    {
        Saved s;
        s.user.filesToSave = {s.Path("second & last.vl3")};
        s.Entry("mnuSaveAs")->trigger();
        const auto entries = s.Menu("mnuRecent")->actions();
        QVERIFY(entries.size() >= 2);
        QCOMPARE(entries[0]->text(), QString("&1  second && last.vl3"));
        QCOMPARE(entries[1]->text(), QString("&2  stock.vl3"));
        entries[1]->trigger();
        QCOMPARE(s.window.objData().DSFName(), s.Path("stock.vl3"));
    }

    void AProjectOfEitherVersionCanBeDroppedOnTheWindow()
    {
        Saved s;
        const auto accepts = [&](const std::string& path) {
            QMimeData mime;
            mime.setUrls({QUrl::fromLocalFile(QString::fromStdString(path))});
            QDragEnterEvent drag(QPoint(5, 5), Qt::CopyAction, &mime, Qt::LeftButton, Qt::NoModifier);
            drag.ignore();
            QApplication::sendEvent(&s.window, &drag);
            return drag.isAccepted();
        };
        QVERIFY(accepts(s.Path("stock.vl3")));
        QVERIFY(accepts(kLegacySample));
        QVERIFY(accepts(s.Path("STOCK.VL2")));
        QVERIFY(!accepts(s.Path("stock.vl4")));
    }

    void ACommaSeparatedTableCanBeDroppedOnTheWindow()
    {
        Saved s;
        for (const char* name : {"/table.csv", "/TABLE.CSV"}) {
            QMimeData mime;
            mime.setUrls({QUrl::fromLocalFile(name)});
            QDragEnterEvent drag(QPoint(5, 5), Qt::CopyAction, &mime, Qt::LeftButton, Qt::NoModifier);
            drag.ignore();
            QApplication::sendEvent(&s.window, &drag);
            QVERIFY(drag.isAccepted());
        }
        QMimeData other;
        other.setUrls({QUrl::fromLocalFile("/table.csv.gz")});
        QDragEnterEvent drag(QPoint(5, 5), Qt::CopyAction, &other, Qt::LeftButton, Qt::NoModifier);
        drag.ignore();
        QApplication::sendEvent(&s.window, &drag);
        QVERIFY(!drag.isAccepted());
    }

    void NewSavesUnderANameAndACancelledNameLeavesItUnsaved()
    {
        Saved s;
        s.user.filesToSave = {s.Path("new.vl3")};
        s.New(3, {columns::Effort});
        QVERIFY(!s.Bytes("new.vl3").isEmpty());
        QVERIFY(!s.Dirty());
        QVERIFY(s.window.Edit().EditMode());
        s.Entry("mnuEditMode")->trigger();
        s.New(3, {columns::Effort}); // no name is given
        QVERIFY(s.Dirty());
        QVERIFY(s.window.windowTitle().contains("Untitled"));
    }

    void WithNoLoggedFitsLoadAndDeleteAreGreyAndTheLabelSaysSo()
    {
        Saved s;
        s.Entry("mnuFitManager")->trigger();
        QVERIFY(s.Manager()->isVisible());
        for (const char* name : {"cmdLoad", "cmdDelete", "cmdAdd"})
            QVERIFY2(!s.Button(name)->isEnabled(), name);
        QCOMPARE(s.Count(), QString("Currently there are 0 saved fits."));
        s.Button("cmdExit")->click();
        QVERIFY(!s.Manager()->isVisible());
    }

    void AFitIsLoggedOnceAndStandsInTheProjectAtOnce()
    {
        Saved s;
        s.Fit();
        s.Log("First");
        const QStringList shown{"First", "CONSTANT RECRUITMENT", "LSQ Fit",
                                QLocale().toString(QDate::currentDate(), QLocale::ShortFormat)};
        QCOMPARE(s.Fits()->rowCount(), 1);
        for (int column = 0; column < shown.size(); ++column)
            QCOMPARE(s.Fits()->item(0, column)->text(), shown[column]);
        QVERIFY(!s.Button("cmdAdd")->isEnabled());
        QVERIFY(s.Button("cmdLoad")->isEnabled() && s.Button("cmdDelete")->isEnabled());
        QVERIFY(s.Bytes().contains("First  "));
        QVERIFY(!s.Dirty());
        QCOMPARE(s.Count(), QString("Currently there are 1 saved fits."));
    }

    void AnEmptyNameLogsNothing()
    {
        Saved s;
        s.Fit();
        s.Log("");
        QCOMPARE(s.Fits()->rowCount(), 0);
        QVERIFY(!s.window.objMeth().FitLogged());
        QVERIFY(s.Button("cmdAdd")->isEnabled());
    }

    void ANameThatAProjectCannotKeepIsRefusedAndAskedForAgain()
    {
        Saved s;
        s.Fit();
        s.Entry("mnuFitManager")->trigger();
        s.user.inputs = {std::string("\xD0\xBB\xD0\xB8\xD0\xBD"), std::string("Second try")};
        s.Button("cmdAdd")->click();
        QVERIFY(s.user.Saw("Western European"));
        QCOMPARE(s.Fits()->item(0, 0)->text(), QString("Second try"));
    }

    void LoggingADataSetThatIsNoProjectYetGoesThroughSaveAsAndItsCancelLogsNothing()
    {
        Saved s;
        s.Open(); // and the Save As after the import is cancelled
        s.Fit();
        s.Log("First");
        QCOMPARE(s.Fits()->rowCount(), 0);
        QVERIFY(!s.window.objMeth().FitLogged());
        s.user.filesToSave = {s.Path("later.vl3")};
        s.Log("First");
        QCOMPARE(s.Fits()->rowCount(), 1);
        QVERIFY(s.Bytes("later.vl3").contains("First  "));
    }

    void ALoggedFitComesBackAfterClosingAndOpening()
    {
        Saved s;
        s.Fit();
        const clsMethManager& fits = s.window.objMeth();
        const std::vector<float> results{fits.K(), fits.Q(), fits.RSqr(), fits.FinalPopulation()};
        const std::size_t graphs = s.window.Graphs().UserTitles().size();
        s.Log("First");
        s.user.answers = {Answer::Yes}; // clear the fit
        s.Entry("mnuClose")->trigger();
        QVERIFY(!s.Manager()->isVisible());
        s.Reopen();
        QVERIFY(!s.Entry("mnuNewParams")->isEnabled());
        s.Entry("mnuFitManager")->trigger();
        s.user.messages.clear();
        s.Button("cmdLoad")->click();
        QVERIFY(s.user.messages.empty());
        const clsMethManager& again = s.window.objMeth();
        QVERIFY(again.MethDefined());
        QVERIFY((results == std::vector<float>{again.K(), again.Q(), again.RSqr(), again.FinalPopulation()}));
        QCOMPARE(s.window.Graphs().UserTitles().size(), graphs);
        QVERIFY(s.Report()->isVisible());
        QVERIFY(s.Entry("mnuNewParams")->isEnabled()); // from now on for the whole run
        QVERIFY(s.window.Sheet().GridColOf(columns::ExpCatchNums) > 0);
        QVERIFY(!s.Dirty());
        QVERIFY(s.Button("cmdAdd")->isEnabled()); // it counts as not logged and can be logged again
        s.Log("Second");
        QCOMPARE(s.Fits()->rowCount(), 2);
    }

    void LoadingAsksBeforeItReplacesAFitAndNoKeepsIt()
    {
        Saved s;
        s.Fit();
        s.Log("First");
        s.user.messages.clear();
        s.user.answers = {Answer::No};
        QTest::keyClick(s.Fits(), Qt::Key_Return); // Enter loads the current row
        QVERIFY(s.user.Saw("OK to delete current fit?"));
        QCOMPARE(s.user.messages.back().buttons, Buttons::YesNo);
        QVERIFY(s.window.objMeth().FitLogged());
        s.user.answers = {Answer::Yes};
        QTest::keyClick(s.Fits(), Qt::Key_Return);
        QVERIFY(!s.window.objMeth().FitLogged());
        QVERIFY(s.window.objMeth().MethDefined());
    }

    void ReloadingRestoresTheTogglesOfTheFitAndTheGridShowsThem()
    {
        Saved s;
        s.ClickBox(3);
        s.Fit();
        s.Log("Without 1972");
        s.user.answers = {Answer::Yes};
        s.ClickBox(3);
        s.ClickBox(5);
        QVERIFY(s.window.objData().ToggledIn(3) && !s.window.objData().ToggledIn(5));
        s.Button("cmdLoad")->click();
        QVERIFY(!s.window.objData().ToggledIn(3) && s.window.objData().ToggledIn(5));
        const QModelIndex box = s.Grid().model()->index(2, TableSheet::kIncludeColumn);
        QCOMPARE(box.data(Qt::CheckStateRole).value<Qt::CheckState>(), Qt::Unchecked);
    }

    void ADeletedFitIsGoneFromTheFileAndTheCurrentFitStays()
    {
        Saved s;
        s.Fit();
        s.Log("First");
        const QByteArray with = s.Bytes();
        s.user.messages.clear();
        s.user.answers = {Answer::No};
        s.Button("cmdDelete")->click();
        QVERIFY(s.user.Saw("Are you sure you want to permanently delete fit?First"));
        QCOMPARE(s.user.messages.back().icon, Icon::Question);
        QCOMPARE(s.Fits()->rowCount(), 1);
        s.user.answers = {Answer::Yes};
        s.Button("cmdDelete")->click();
        QCOMPARE(s.Fits()->rowCount(), 0);
        QVERIFY(!s.Bytes().contains("First  "));
        QVERIFY(s.Bytes().size() < with.size() - 20000); // its body too
        QVERIFY(s.window.objMeth().MethDefined());
        QVERIFY(!s.window.Graphs().Empty());
    }

    void ADeletionThatDoesNotReachTheDiskIsTakenBack()
    {
        Saved s;
        s.Fit();
        s.Log("First");
        const QByteArray before = s.Bytes();
        s.TakeFolderAway();
        s.user.messages.clear();
        s.user.answers = {Answer::Yes};
        s.Button("cmdDelete")->click();
        QVERIFY(s.user.Saw("Unable to Delete Fit"));
        QVERIFY(s.user.Saw("cannot be written"));
        QCOMPARE(s.Fits()->rowCount(), 1);
        QVERIFY(!s.Dirty());
        s.BringFolderBack();
        QCOMPARE(s.Bytes(), before);
    }

    void TheFitManagerCarriesTheWordsOfTheTable()
    {
        Saved s;
        s.Entry("mnuFitManager")->trigger();
        QCOMPARE(s.Manager()->windowTitle(), QString("Fit Manager"));
        const std::array<std::array<const char*, 3>, 4> words{{{"cmdLoad", "mnuLoad", "&Load Fit"},
                                                               {"cmdDelete", "mnuDelete", "&Delete Fit"},
                                                               {"cmdAdd", "mnuAdd", "&Add Current Fit"},
                                                               {"cmdExit", "mnuExit", "&OK"}}};
        for (const auto& [button, entry, text] : words) {
            QCOMPARE(s.Button(button)->text(), QString(text));
            QCOMPARE(s.Manager()->findChild<QAction*>(entry)->text(), QString(text));
        }
        QStringList heads;
        for (int column = 0; column < s.Fits()->columnCount(); ++column)
            heads += s.Fits()->horizontalHeaderItem(column)->text();
        QCOMPARE(heads, QStringList({"Fit Name", "Model", "Fit", "Date", "Time"}));
    }

    void AFitThatCannotBeLoadedIsToldAndLeavesNone()
    {
        Saved s;
        s.Fit();
        s.Log("First");
        QFile file(QString::fromStdString(s.Path("stock.vl3")));
        QVERIFY(file.open(QIODevice::ReadWrite));
        const QByteArray bytes = file.readAll();
        QVERIFY(file.seek(bytes.indexOf("First") + 70)); // where the index says that the body begins
        file.write(QByteArray("\xFF\xFF\xFF\x7F", 4));
        file.close();
        s.user.answers = {Answer::Yes};
        s.Entry("mnuClose")->trigger();
        s.Reopen();
        s.Entry("mnuFitManager")->trigger();
        s.user.messages.clear();
        s.Button("cmdLoad")->click();
        QVERIFY(s.user.messages.size() >= 2);
        QCOMPARE(s.user.messages[0].text, std::string("Unable to Load Fit"));
        QCOMPARE(s.user.messages[0].icon, Icon::Critical);
        QVERIFY(QString::fromStdString(s.user.messages[1].text).startsWith("ReadObj Failure."));
        QVERIFY(!s.window.objMeth().MethDefined());
        QVERIFY(s.window.Graphs().Empty());
        QCOMPARE(s.Panel("Status"), QString("Ready..."));
        QVERIFY(!s.Entry("mnuNewParams")->isEnabled()); // nothing was loaded
    }

    void DeletingTheFitThatWasLoadedLeavesItOnTheScreen()
    {
        Saved s;
        s.Fit();
        s.Log("First");
        s.user.answers = {Answer::Yes, Answer::Yes}; // the fit of now may go, and then the one of the list
        s.Button("cmdLoad")->click();
        const auto graphs = s.window.Graphs().UserTitles();
        const float k = s.window.objMeth().K();
        s.Button("cmdDelete")->click();
        QCOMPARE(s.Fits()->rowCount(), 0);
        QVERIFY(s.window.objMeth().MethDefined());
        QCOMPARE(s.window.objMeth().K(), k);
        QVERIFY(s.Report()->isVisible());
        QVERIFY(!graphs.empty() && s.window.Graphs().UserTitles() == graphs);
        QVERIFY(s.Button("cmdAdd")->isEnabled()); // and so it can be kept after all
    }

    void ADoubleClickLoadsTheFitOfARowAndDoesNothingOnTheHeads()
    {
        Saved s;
        s.Fit();
        s.Log("First");
        s.user.messages.clear();
        QHeaderView& heads = *s.Fits()->horizontalHeader();
        const QPoint head(heads.sectionViewportPosition(0) + 5, heads.height() / 2);
        QTest::mouseClick(heads.viewport(), Qt::LeftButton, Qt::NoModifier, head);
        QTest::mouseDClick(heads.viewport(), Qt::LeftButton, Qt::NoModifier, head);
        QVERIFY(s.user.messages.empty());
        QVERIFY(s.window.objMeth().FitLogged());

        s.user.answers = {Answer::Yes};
        const QPoint row = s.Fits()->visualItemRect(s.Fits()->item(0, 0)).center();
        QTest::mouseClick(s.Fits()->viewport(), Qt::LeftButton, Qt::NoModifier, row);
        QTest::mouseDClick(s.Fits()->viewport(), Qt::LeftButton, Qt::NoModifier, row);
        QVERIFY(s.user.Saw("OK to delete current fit?"));
        QVERIFY(s.window.objMeth().MethDefined());
        QVERIFY(!s.window.objMeth().FitLogged()); // what stands now is a copy of the logged one
    }

    void AFitThatCannotBeLoggedIsTakenOutAgain()
    {
        Saved s;
        s.Fit();
        s.TakeFolderAway();
        s.user.messages.clear();
        s.Log("First");
        QVERIFY(s.user.Saw("Unable to Save Fit"));
        QCOMPARE(s.user.messages.front().icon, Icon::Critical);
        QCOMPARE(s.Fits()->rowCount(), 0);
        QVERIFY(!s.window.objMeth().FitLogged());
        s.BringFolderBack();
        s.Log("First");
        QCOMPARE(s.Fits()->rowCount(), 1);
    }

    void OfTwoNamesThatDifferByLeadingBlanksLoadTakesTheFirst()
    {
        Saved s;
        s.Fit();
        s.Log(" Same");
        s.user.answers = {Answer::Yes};
        s.user.ChoosesFit("CONSTANT", 2);
        s.Entry("mnuNewModel")->trigger();
        s.Log("Same");
        QCOMPARE(s.Fits()->rowCount(), 2);
        QCOMPARE(s.Fits()->item(0, 0)->text(), s.Fits()->item(1, 0)->text());
        s.Fits()->setCurrentCell(1, 0);
        s.user.answers = {Answer::Yes};
        s.Button("cmdLoad")->click();
        QCOMPARE(s.window.objMeth().ErrorModel(), 1); // that of the first
    }

    void NoFitIsLoadedWhileDataAreEdited()
    {
        Saved s;
        s.Fit();
        s.Log("First");
        s.user.answers = {Answer::Yes};
        s.Entry("mnuEditMode")->trigger();
        QVERIFY(s.window.Edit().EditMode());
        for (const char* name : {"cmdLoad", "cmdDelete", "cmdAdd"})
            QVERIFY2(!s.Button(name)->isEnabled(), name);
    }

    void TheMenuOfTheFitManagerRepeatsItsButtons()
    {
        Saved s;
        s.Entry("mnuFitManager")->trigger();
        emit s.Manager()->findChild<QMenu*>("mnuFit")->aboutToShow();
        QVERIFY(!s.Manager()->findChild<QAction*>("mnuLoad")->isEnabled());
        s.Manager()->findChild<QAction*>("mnuExit")->trigger();
        QVERIFY(!s.Manager()->isVisible());
    }

    void WhatACrashLeftBehindIsOfferedAndOpenedAsUnsavedOrRemoved()
    {
        Saved s;
        s.Change("Of the crash");
        s.Entry("mnuEditMode")->trigger();
        s.Entry("mnuEditMode")->trigger(); // which keeps the working copy in step
        // A folder as a killed program leaves it: the copy, and a lock that nobody holds.
        const fs::path left = fs::temp_directory_path() / "velt-project-crashd";
        const auto leave = [&] {
            fs::remove_all(left);
            for (const fs::path& folder : WorkingFolders())
                fs::copy(folder, left);
        };
        leave();
        Session next;
        next.user.answers = {Answer::Cancel};
        next.window.OfferLeftovers();
        QVERIFY(next.user.Saw("VELT ended unexpectedly while this was open:\n" + s.Path("stock.vl3")));
        QVERIFY(fs::exists(left) && !next.window.FileOpen());

        next.user.answers = {Answer::Yes};
        next.window.OfferLeftovers();
        QVERIFY(next.window.FileOpen());
        QVERIFY(next.window.objData().IsDirty());
        QCOMPARE(QString::fromStdString(next.window.objData().DSDesc()), QString("Of the crash"));
        QVERIFY(!fs::exists(left));
        next.user.answers = {Answer::No};
        next.Entry("mnuClose")->trigger();

        leave();
        next.user.answers = {Answer::No};
        next.window.OfferLeftovers();
        QVERIFY(!fs::exists(left));
        QVERIFY(!next.window.FileOpen());
    }

    void TheWorkingCopyIsTheOwnersAloneAndGoesWithTheProgram()
    {
        fs::path folder;
        {
            const Saved s;
            QCOMPARE(WorkingFolders().size(), std::size_t{1});
            folder = WorkingFolders().front();
            QCOMPARE(fs::status(folder).permissions() & fs::perms::all, fs::perms::owner_all);
        }
        QVERIFY(!fs::exists(folder));
    }
};

int main(int argc, char* argv[])
{
    // A folder for working copies that no other program and no other test looks into.
    const QTemporaryDir temporary;
    qputenv("TMPDIR", temporary.path().toLocal8Bit());
    QApplication application(argc, argv);
    projects_test test;
    return QTest::qExec(&test, argc, argv);
}

#include "projects_test.moc"
