// SPDX-License-Identifier: GPL-3.0-or-later
// The fits that are logged in a project: the fit manager, what it loads and deletes, and what the disk holds
// then.
#include "SavedProject.h"

#include <QHeaderView>

#include <array>

class projects_fits_test : public QObject
{
    Q_OBJECT

private slots:
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

    void AFitWhoseNameEndsInABlankThatDoesNotBreakLoads()
    {
        Saved s;
        s.Fit();
        s.Log("abc\xC2\xA0"); // U+00A0, which is no blank of a name
        QCOMPARE(s.Fits()->rowCount(), 1);
        QVERIFY(!s.Button("cmdAdd")->isEnabled()); // the fit on the screen is logged
        s.user.answers = {Answer::Yes};
        s.Button("cmdLoad")->click();
        QVERIFY(s.Button("cmdAdd")->isEnabled()); // it gave way to the loaded one
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

    void OfTwoNamesThatDifferByLeadingBlanksLoadTakesTheFirstAndDeleteTheChosenOne()
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
        s.Fits()->setCurrentCell(0, 0);
        s.user.answers = {Answer::Yes};
        s.Button("cmdDelete")->click();
        QCOMPARE(s.Fits()->rowCount(), 1);
        QCOMPARE(s.window.objData().LoggedFit(1).FitOp(), 2);
    }

    void AddAndDeleteAskBeforeTheyReplaceAProjectThatSomebodyElseChanged()
    {
        Saved s;
        s.Fit();
        s.Log("First");
        QFile file(QString::fromStdString(s.Path("stock.vl3")));
        QVERIFY(file.open(QIODevice::Append));
        file.write("from elsewhere");
        file.close();
        s.user.messages.clear();
        s.user.answers = {Answer::Yes, Answer::No}; // delete, but do not replace
        s.Button("cmdDelete")->click();
        QVERIFY(s.user.Saw("was changed since it was opened here"));
        QCOMPARE(s.Fits()->rowCount(), 1);
        s.user.answers = {Answer::Yes};
        s.Entry("mnuNewModel")->trigger();
        s.user.messages.clear();
        s.user.answers = {Answer::No};
        s.user.inputs = {std::string("Second")};
        s.Button("cmdAdd")->click();
        QVERIFY(s.user.Saw("was changed since it was opened here"));
        QCOMPARE(s.Fits()->rowCount(), 1);
        QVERIFY(s.Bytes().endsWith("from elsewhere"));
        s.user.answers = {Answer::Yes};
        s.Button("cmdAdd")->click();
        QCOMPARE(s.Fits()->rowCount(), 2);
        QVERIFY(!s.Bytes().endsWith("from elsewhere"));
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
};

int main(int argc, char* argv[])
{
    return RunAmongOwnWorkingCopies<projects_fits_test>(argc, argv);
}

#include "projects_fits_test.moc"
