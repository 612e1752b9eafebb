// SPDX-License-Identifier: GPL-3.0-or-later
// Files of other kinds through the real main window: tables and older projects that come in, the text that
// goes out, what is not recognised.
#include "SavedProject.h"
#include "dialogs/frmASCIIWizard.h"
#include "files/AsciiWizard.h"
#include "shell/frmVelt3.h"
#include "views/DataGridView.h"

#include <QAction>
#include <QMenuBar>
#include <QMimeData>
#include <QTimer>
#include <QtTest>

#include <utility>

namespace
{
const std::string kLegacySample = VELT_TEST_SAMPLES "/legacy/old_good.vl2";
} // namespace

class projects_exchange_test : public QObject
{
    Q_OBJECT

private slots:
    void AnImportedFileFillsTheTableAndTheCaption()
    {
        Session session;
        session.Open();
        QVERIFY(session.window.FileOpen());
        QCOMPARE(session.window.windowTitle(),
                 QString("VELT 3.0 - const25.txt - Constant recruitment, 25 years"));
        const DataGridModel& model = session.window.findChild<DataGridView*>()->Model();
        QCOMPARE(model.rowCount(), 25);
        QCOMPARE(model.columnCount(), 5);
        const QStringList titles{"Time", "Include", "Tot. Catch Nums", "Effort", "Catch Nums"};
        for (int column = 0; column < 5; ++column)
            QCOMPARE(model.headerData(column, Qt::Horizontal, Qt::DisplayRole).toString(), titles[column]);
        QCOMPARE(model.data(model.index(0, 0), Qt::DisplayRole).toString(), QString("1970"));
        QCOMPARE(model.data(model.index(0, 3), Qt::DisplayRole).toString(),
                 QString("109.3")); // with the decimals of the file
        QCOMPARE(session.window.Sheet().GridColOf(columns::Effort), 3);
        QCOMPARE(session.window.Sheet().GridColOf(columns::CatchWt), 0);
        QVERIFY(!(model.flags(model.index(0, 3)) & Qt::ItemIsEditable));
        QVERIFY(session.Menu("mnuFit")->isEnabled());
        QVERIFY(!session.Entry("mnuParameters")->isEnabled());
    }

    void OpenReadsTheFileThatWasChosen()
    {
        Session session;
        session.user.files = {std::string(VELT_TEST_SAMPLES) + "/expected/const25.txt"};
        session.Entry("mnuOpen")->trigger();
        QVERIFY(session.window.FileOpen());
        QCOMPARE(session.window.objData().TimeInts(), 25);
    }

    void OpenOffersProjectsTextAndCommaSeparatedTables()
    {
        struct Chooser : ScriptedUser {
            std::optional<std::string> AskFileToOpen(const FileQuestion& question) override
            {
                filter = question.filter;
                return {};
            }
            std::string filter;
        } user;
        frmVelt3 window(&user);
        window.menuBar()->findChild<QAction*>("mnuOpen")->trigger();
        QCOMPARE(
            user.filter,
            std::string("Projects and tables (*.vl3 *.vl2 *.txt *.csv);;Velt 3.0 (*.vl3);;Velt 2.0 (*.vl2);;"
                        "Text (*.txt);;Comma-separated (*.csv)"));
    }

    void ACommaSeparatedTableOpensThroughTheRealWizardWithItsGuesses()
    {
        Session session;
        session.user.onAsciiWizard = [&session](AsciiWizard& wizard) {
            QTimer::singleShot(0, [] { // no hand but on the two buttons
                auto* form = QApplication::activeModalWidget();
                form->findChild<QPushButton*>("cmdNext")->click();
                form->findChild<QPushButton*>("cmdFinish")->click();
            });
            return frmASCIIWizard::Ask(session.user, wizard, nullptr);
        };
        const std::string path = VELT_TEST_SAMPLES "/datasets/squid_loligo_gahi_falklands_1990.csv";
        session.user.files = {path};
        session.Entry("mnuOpen")->trigger();

        const clsVeltData& data = session.window.objData();
        QCOMPARE(data.TimeInts(), 120);
        QCOMPARE(data.DSDesc(), std::string("squid_loligo_gahi_falklands_1990.csv"));
        QCOMPARE(data.Effort(1), 17.0F);
        QCOMPARE(data.MeanWt(1), 0.0359F);
        QVERIFY(!data.ColPresent(columns::TotCatchWt)); // "catch_kg" may be two columns
        QVERIFY(session.user.messages.empty());
        QCOMPARE(session.user.asked.back(), std::string("file to save")); // it becomes a project
        QVERIFY(session.Menu("mnuRecent")->actions().front()->text().contains("squid_loligo"));
    }

    void AFaultInACommaSeparatedTableIsToldWithItsLine()
    {
        Session session;
        QTemporaryDir folder;
        QFile file(folder.filePath("ling.csv"));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("Year,Boats\n1990,5\n1991,five\n");
        file.close();
        session.window.OpenPath(file.fileName());
        QCOMPARE(session.user.messages.size(), std::size_t{1});
        QCOMPARE(session.user.messages.front().title, std::string("Import Error"));
        QVERIFY(session.user.Saw("Line 3, column \"Boats\": \"five\" is not a number."));
    }

    void CancelInTheFileDialogLeavesNoDataSetOpen()
    {
        Session session;
        session.Open();
        session.user.answers = {Answer::No}; // to the question about changes
        session.Entry("mnuOpen")->trigger();
        QVERIFY(!session.window.FileOpen());
        QVERIFY(session.Panel("lblHint").contains("To begin"));
    }

    // It used to be called missing, and then of an unknown type.
    void APathThatLoopsIsAnUnidentifiedErrorToldOnce()
    {
        Session session;
        QTemporaryDir folder;
        const QString loop = folder.filePath("loop.txt");
        QVERIFY(QFile::link(loop, loop));
        session.window.OpenPath(loop);
        QCOMPARE(session.user.messages.size(), std::size_t{1});
        QVERIFY(session.user.Saw("Default Error Message: An internal unidentified error has occured.\n" +
                                 loop.toStdString()));
    }

    void AFailedImportSaysThatTheDataSetIsEmptyAndHowToFillIt()
    {
        Session session;
        session.window.OpenPath(QString(VELT_TEST_SAMPLES) + "/import/bad_token_missing.txt");
        QVERIFY(session.user.Saw("Bad number of data columns."));
        QVERIFY(session.Panel("lblHint").contains("has no time periods"));
        session.Entry("mnuNewModel")->trigger();
        QVERIFY(session.user.Saw("No models available for this dataset"));
    }

    void AnUnknownFileIsNotRecognised()
    {
        Session session;
        QTemporaryDir folder;
        const QString path = folder.filePath("notes.doc");
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("nothing that this program knows");
        file.close();
        session.window.OpenPath(path);
        QVERIFY(session.user.Saw("File type not recognised."));
        QVERIFY(!session.window.FileOpen());
        QCOMPARE(session.Panel("Status"), QString("Ready..."));
    }

    // The name alone would make a table of the third.
    void AFileThatDoesNotExistIsToldAndThenNotRecognised()
    {
        QTemporaryDir folder;
        for (const char* name : {"gone.vl3", "gone.vl2", "gone.txt"}) {
            Session session;
            const QString path = folder.filePath(name);
            session.window.OpenPath(path);
            QCOMPARE(session.user.messages.size(), std::size_t{2});
            QCOMPARE(session.user.messages[0].text,
                     "The file " + path.toStdString() + " doesn't exist.\nPlease select another file. ");
            QCOMPARE(session.user.messages[0].title, std::string("File Message"));
            QCOMPARE(session.user.messages[1].text, std::string("File type not recognised."));
            QVERIFY(!session.window.FileOpen());
            QVERIFY(!QFile::exists(path));
        }
    }

    void FilesOfRelatedToolsAreNotRecognised()
    {
        QTemporaryDir folder;
        for (const auto& [name, version] : {std::pair{"other.qx4", '\1'}, std::pair{"other.qx5", '\4'}}) {
            Session session;
            QFile file(folder.filePath(name));
            QVERIFY(file.open(QIODevice::WriteOnly));
            file.write(QByteArray("\0\4\0\10\6\11ORVO", 10) + version + QByteArray(200, '\0'));
            file.close();
            session.window.OpenPath(file.fileName());
            QCOMPARE(session.user.messages.size(), std::size_t{1});
            QVERIFY(session.user.Saw("File type not recognised."));
            QVERIFY(!session.window.FileOpen());
        }
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
};

int main(int argc, char* argv[])
{
    return RunAmongOwnWorkingCopies<projects_exchange_test>(argc, argv);
}

#include "projects_exchange_test.moc"
