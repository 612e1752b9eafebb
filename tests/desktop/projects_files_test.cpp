// SPDX-License-Identifier: GPL-3.0-or-later
// Projects on disk through the real main window: New, Open, Save and Close, the questions before work would
// be lost, what a crash leaves.
#include "SavedProject.h"
#include "data/CellFont.h"
#include "data/NumberFormat.h"

#include <QFont>

#include <filesystem>

namespace
{
namespace fs = std::filesystem;

std::vector<fs::path> WorkingFolders()
{
    std::vector<fs::path> found;
    for (const auto& entry : fs::directory_iterator(fs::temp_directory_path()))
        if (entry.path().filename().string().starts_with("velt-project-"))
            found.push_back(entry.path());
    return found;
}

/// Somebody else changes the project on disk, and Save leaves that on No.
void ChangeFromElsewhereIsNoticed(Saved& s)
{
    QFile file(QString::fromStdString(s.Path("stock.vl3")));
    QVERIFY(file.open(QIODevice::Append));
    file.write("from elsewhere");
    file.close();
    s.user.messages.clear();
    s.user.answers = {Answer::No};
    s.Entry("mnuSave")->trigger();
    QVERIFY(s.user.Saw("was changed since it was opened here"));
    QVERIFY(s.Bytes().endsWith("from elsewhere"));
}
} // namespace

class projects_files_test : public QObject
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
        QVERIFY(s.user.Saw("WriteObj Failure."));
        QVERIFY(s.user.Saw("cannot be written: No such file or directory."));
        QVERIFY(s.user.Saw("stays open and unsaved. Save As keeps it under another name"));
        QVERIFY(s.Dirty());
        QCOMPARE(s.window.objData().DSFName(), s.Path("stock.vl3"));
        QVERIFY(!s.Bytes().contains("Changed"));
        s.Entry("mnuSave")->trigger(); // where it was it can still be saved
        QVERIFY(s.Bytes().contains("Changed"));
    }

    void ASaveThatFailsWhileTheWindowClosesIsToldOnceAndKeepsTheWindow()
    {
        Saved s;
        s.Change();
        s.TakeFolderAway();
        s.user.messages.clear();
        s.user.answers = {Answer::Yes};
        s.window.close();
        QVERIFY(s.window.isVisible());
        QVERIFY(s.window.FileOpen() && s.Dirty());
        QCOMPARE(s.user.messages.size(), std::size_t{2}); // the question and the failure
        QVERIFY(s.user.messages.back().text.find("WriteObj Failure.") == 0);
        QCOMPARE(s.Panel("Status"), QString("Ready..."));
        s.BringFolderBack();
        s.user.answers = {Answer::Yes};
        s.window.close();
        QVERIFY(!s.window.isVisible());
        QVERIFY(s.Bytes().contains("Changed"));
    }

    void ANewDataSetWhoseSaveFailsStandsOpenInEditModeAndCanBeSavedElsewhere()
    {
        Saved s;
        s.user.filesToSave = {s.Path("missing/new.vl3")};
        s.New(3, {columns::Effort});
        QVERIFY(s.user.Saw("WriteObj Failure."));
        QVERIFY(s.window.Edit().EditMode());
        QVERIFY(s.Grid().isVisible());
        QCOMPARE(s.Grid().Rows(), 4); // with the one behind the last period
        s.user.filesToSave = {s.Path("new.vl3")};
        s.Entry("mnuEditMode")->trigger();
        s.Entry("mnuSave")->trigger();
        QVERIFY(!s.Bytes("new.vl3").isEmpty());
    }

    void ASaveAsThatFailsStillNoticesThatTheProjectItselfWasChangedOnDisk()
    {
        Saved s;
        s.Change();
        s.user.filesToSave = {s.Path("missing/stock.vl3")};
        s.Entry("mnuSaveAs")->trigger();
        ChangeFromElsewhereIsNoticed(s);
    }

    void ASaveAsThatFailsLeavesTheProjectOpenUnderItsNameForOtherPrograms()
    {
        Saved s;
        s.Change();
        s.user.filesToSave = {s.Path("missing/stock.vl3")};
        s.Entry("mnuSaveAs")->trigger();
        Session other;
        other.user.answers = {Answer::No};
        other.window.OpenPath(QString::fromStdString(s.Path("stock.vl3")));
        QVERIFY(other.user.Saw("Another VELT on this computer has this project open"));
    }

    void AProjectThatSomebodyElseChangedOnDiskIsReplacedOnlyOnYes()
    {
        Saved s;
        s.Change();
        ChangeFromElsewhereIsNoticed(s);
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
    return RunAmongOwnWorkingCopies<projects_files_test>(argc, argv);
}

#include "projects_files_test.moc"
