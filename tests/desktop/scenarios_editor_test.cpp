// SPDX-License-Identifier: GPL-3.0-or-later
// The editor of scenarios: typed, pasted, added, deleted.
#include "ScenarioSession.h"

class scenarios_editor_test : public QObject
{
    Q_OBJECT

private slots:
    void TheProjectionsMenuFollowsFitScenariosAndBootstraps()
    {
        Session session;
        QVERIFY(!session.Menu("mnuProjections")->isEnabled());
        session.Open();
        QVERIFY(session.Menu("mnuProjections")->isEnabled());
        QVERIFY(!session.Entry("mnuViewProj")->isEnabled());
        session.Fit();
        QVERIFY(session.Entry("mnuViewProj")->isEnabled());
        QVERIFY(!session.Entry("mnuProject")->isEnabled());
        session.Entry("mnuViewProj")->trigger(); // which makes a first scenario
        QVERIFY(session.Entry("mnuProject")->isEnabled());
        QVERIFY(!session.Entry("mnuProjWithCI")->isEnabled());
        session.Entry("mnuGenerateConfInts")->trigger();
        QVERIFY(session.Entry("mnuProjWithCI")->isEnabled());
    }

    void ANewDataSetShowsOneScenarioOfOnePeriod()
    {
        Fitted session;
        session.SetUp();
        QVERIFY(session.Editor().isVisible());
        QCOMPARE(session.Editor().windowTitle(), QString("Projection Scenarios"));
        QCOMPARE(session.Cell(0, 1), QString("Scenario1"));
        QCOMPARE(session.Cell(1, 1), QString("Effort"));
        QCOMPARE(session.Cell(kFirst, 1), QString("0.000"));
        QCOMPARE(session.Year(0), QString("Time"));
        QCOMPARE(session.Year(kFirst),
                 QString::number(session.Data().MinTimeP() + session.Data().NAPoints()));
        QVERIFY(session.Units().isVisible());
        QCOMPARE(session.Units().currentText(), QString("Effort"));
        QVERIFY(session.Cells().Selected() == GridSelection::At(kFirst, 1));
    }

    void TheCommandsOfTheEditorCarryTheWordsOfTheTable()
    {
        Fitted session;
        session.SetUp();
        const std::pair<const char*, const char*> words[] = {{"mnuAddScenario", "&Add Scenario"},
                                                             {"mnuDeleteScenario", "&Delete Scenario"},
                                                             {"mnuAddRow", "Add Row"},
                                                             {"mnuDeleteRow", "Delete Row"},
                                                             {"mnuCopy", "&Copy"},
                                                             {"mnuPaste", "&Paste"}};
        for (const auto& [command, text] : words)
            QCOMPARE(session.Command(command)->text(), QString(text));
        QStringList menus;
        for (const QMenu* menu : session.Editor().findChildren<QMenu*>())
            menus += menu->title();
        QVERIFY(menus.contains("&Projections") && menus.contains("&Edit"));
        QStringList units;
        for (int i = 0; i < session.Units().count(); ++i)
            units += session.Units().itemText(i);
        QCOMPARE(units, QStringList({"Effort", "Total Catch Weight", "Total Catch Numbers"}));
    }

    void ValuesAreTypedAndAKeyBelowTheLastRowAddsOne()
    {
        Fitted session;
        session.SetUp();
        session.Type("120");
        session.Press(Qt::Key_Down);
        session.Type("12.75");
        session.Press(Qt::Key_Return);
        QCOMPARE(session.Data().NumPts(), 2);
        QCOMPARE(session.Kept("Scenario1", 1), 120);
        QCOMPARE(session.Kept("Scenario1", 2), 13);
        QCOMPARE(session.Cell(kFirst + 1, 1), QString("12.750"));
        QVERIFY(session.Editor().findChild<QLabel*>("lblNote")->text().contains("as 13"));
        session.Entry("mnuViewProj")->trigger();
        QCOMPARE(session.Cell(kFirst + 1, 1), QString("13.000"));
    }

    void AKeyBesideTheScenariosAddsOne()
    {
        Fitted session;
        session.SetUp();
        session.Press(Qt::Key_Right);
        session.Type("5");
        session.Press(Qt::Key_Return);
        QCOMPARE(session.Cell(0, 2), QString("Scenario2"));
        QCOMPARE(session.Kept("Scenario2", 1), 5);
        session.GoTo(kFirst, 9); // far out: the next free column takes it
        session.Press(Qt::Key_Return);
        QCOMPARE(session.Cell(0, 3), QString("Scenario3"));
        QVERIFY(session.Cells().Selected() == GridSelection::At(kFirst, 3));
        QVERIFY(!session.Cells().Box().isVisible());
    }

    void ATitleIsTypedInItsCell()
    {
        Fitted session;
        session.SetUp();
        session.Press(Qt::Key_Up);
        session.Press(Qt::Key_Up);
        QVERIFY(session.Cells().Selected() == GridSelection::At(0, 1));
        session.Type("Half effort");
        QVERIFY(session.Cells().Box().isVisible());
        QCOMPARE(session.Cells().Box().parentWidget(), session.Heads().viewport());
        session.Press(Qt::Key_Return);
        QCOMPARE(session.Cell(0, 1), QString("Half effort"));
        QVERIFY(session.Data().ProjScenario("Half effort"));
        session.Type("   ");
        session.Press(Qt::Key_Return);
        QVERIFY(session.user.Saw("Scenario names cannot be empty and must be unique"));
        QVERIFY(session.Cells().Box().isVisible());
        session.Press(Qt::Key_Escape);
        QCOMPARE(session.Cell(0, 1), QString("Half effort"));
    }

    void ADoubleClickOnATitleOpensIt()
    {
        Fitted session;
        session.SetUp();
        const QRect title = session.Heads().visualRect(session.Heads().model()->index(0, 1));
        QTest::mouseClick(session.Heads().viewport(), Qt::LeftButton, Qt::NoModifier, title.center());
        QVERIFY(session.Cells().Selected() == GridSelection::At(0, 1));
        QTest::mouseDClick(session.Heads().viewport(), Qt::LeftButton, Qt::NoModifier, title.center());
        QVERIFY(session.Cells().Box().isVisible());
    }

    void TheUnitIsPickedFromTheListOverItsCell()
    {
        Fitted session;
        session.SetUp();
        session.Units().setCurrentIndex(2);
        emit session.Units().activated(2);
        QCOMPARE(session.Cell(1, 1), QString("Total Catch Numbers"));
        QCOMPARE(session.Data().ProjScenario("Scenario1")->VecType(), vec_type::kTotCatchNums);
        session.Press(Qt::Key_Right);
        QVERIFY(!session.Units().isVisible()); // no scenario there
        session.Press(Qt::Key_Left);
        QCOMPARE(session.Units().currentText(), QString("Total Catch Numbers"));
        session.Units().setFocus();
        QTest::keyClick(&session.Units(), Qt::Key_Return);
        QVERIFY(session.Cells().Selected() == GridSelection::At(kFirst, 1));
        QVERIFY(session.Cells().hasFocus());
    }

    void AKeyInTheRowOfUnitsOpensTheList()
    {
        Fitted session;
        session.SetUp();
        session.Press(Qt::Key_Up);
        QVERIFY(session.Cells().Selected() == GridSelection::At(1, 1));
        session.Press(Qt::Key_Return);
        QTRY_VERIFY(session.Units().view()->isVisible());
        session.Units().hidePopup();
        QVERIFY(!session.Cells().Box().isVisible());
    }

    void APastedBlockAddsRowsAndScenarios()
    {
        Fitted session;
        session.SetUp();
        session.Paste("1\t10\r\n2\t20\r\n3\t30\r\n");
        QCOMPARE(session.Data().NumPts(), 3);
        QCOMPARE(session.Kept("Scenario2", 3), 30);
        QCOMPARE(session.Cell(kFirst + 2, 2), QString("30.000"));
        session.Paste("x\r\ny\r\n");
        QVERIFY(session.user.Saw("Cannot paste non numeric data"));
    }

    void PasteIsOfferedInsideTheScenariosOnly()
    {
        Fitted session;
        session.SetUp();
        auto* edit = session.Editor().findChild<QMenu*>("mnuEdit");
        const auto offered = [&](int row, int col) {
            session.GoTo(row, col);
            emit edit->aboutToShow();
            return session.Command("mnuPaste")->isEnabled();
        };
        QGuiApplication::clipboard()->setText("1\r\n");
        QVERIFY(offered(kFirst, 1));
        QVERIFY(!offered(kFirst + 1, 1));
        QVERIFY(!offered(kFirst, 2));
        QVERIFY(!offered(0, 1));
        session.Paste("7\r\n"); // by its key, at the title
        QCOMPARE(session.Cell(0, 1), QString("Scenario1"));
        QGuiApplication::clipboard()->clear();
        QVERIFY(!offered(kFirst, 1));
    }

    void TheCommandsAddAndDeleteRowsAndScenarios()
    {
        Fitted session;
        session.SetUp();
        session.Command("mnuAddRow")->trigger();
        session.Command("mnuAddScenario")->trigger();
        QCOMPARE(session.Data().NumPts(), 2);
        QCOMPARE(session.Data().NumProjScenarios(), 2);
        session.Command("mnuDeleteRow")->trigger();
        session.Command("mnuDeleteRow")->trigger();
        QVERIFY(session.user.Saw("Cannot remove all Points"));
        QCOMPARE(session.Data().NumPts(), 1);
        session.Command("mnuAddRow")->trigger();
        session.GoTo(kFirst + 1, 1);
        session.user.answers = {Answer::No, Answer::Yes};
        session.Command("mnuDeleteScenario")->trigger();
        QCOMPARE(session.Data().NumProjScenarios(), 2);
        QVERIFY(session.Cells().Selected() == GridSelection::At(kFirst + 1, 1));
        session.Command("mnuDeleteScenario")->trigger();
        QVERIFY(session.user.Saw("Are you sure you want to delete Scenario?Scenario1 ? "));
        QCOMPARE(session.Cell(0, 1), QString("Scenario2"));
        QVERIFY(session.Cells().Selected() == GridSelection::At(kFirst, 1)); // as after every load
    }

    void DeleteMakesValuesZeroAndLeavesTitlesAlone()
    {
        Fitted session;
        session.SetUp();
        session.Paste("1\r\n2\r\n");
        session.GoTo(kFirst, 1);
        session.Press(Qt::Key_Delete);
        QCOMPARE(session.Kept("Scenario1", 1), 0);
        QCOMPARE(session.Kept("Scenario1", 2), 2);
        session.GoTo(0, 1);
        session.Press(Qt::Key_Delete);
        QCOMPARE(session.Cell(0, 1), QString("Scenario1"));
    }

    void WhatIsBeingTypedIsStoredBeforeAProjection()
    {
        Fitted session;
        session.SetUp();
        session.Type("77");
        session.Project({"Scenario1"});
        QCOMPARE(session.Kept("Scenario1", 1), 77);
        QVERIFY(session.Graph());
    }

    void ClosingTheEditorHidesItAndStoresTheOpenCell()
    {
        Fitted session;
        session.SetUp();
        session.Type("9");
        session.Editor().close();
        QVERIFY(!session.Editor().isVisible());
        QCOMPARE(session.Kept("Scenario1", 1), 9);
        session.SetUp();
        session.Type("-"); // no number
        session.Editor().close();
        QVERIFY(session.user.Saw("Data must be numeric."));
        QVERIFY(session.Editor().isVisible());
    }

    void TheEditorRestsWhileThereIsNoFit()
    {
        Fitted session;
        session.SetUp();
        QVERIFY(session.Editor().isEnabled());
        session.user.answers = {Answer::Yes};
        session.Entry("mnuEditMode")->trigger();
        QVERIFY(!session.Editor().isEnabled());
        session.Entry("mnuEditMode")->trigger();
        session.Fit();
        QVERIFY(session.Editor().isEnabled());
    }

    void ClosingTheDataSetHidesTheEditor()
    {
        Fitted session;
        session.SetUp();
        session.user.answers = {Answer::No, Answer::Yes};
        session.Entry("mnuClose")->trigger();
        QVERIFY(!session.Editor().isVisible());
        session.Open();
        session.Fit();
        session.SetUp();
        QCOMPARE(session.Cell(0, 1), QString("Scenario1"));
    }

    void TheEditorShows199RowsAndKeepsTitlesInView()
    {
        Fitted session;
        session.SetUp();
        for (int i = 1; i < 199 - session.Data().NAPoints(); ++i)
            session.Command("mnuAddRow")->trigger();
        QCOMPARE(session.Data().NumPts() + session.Data().NAPoints(), 199);
        session.Command("mnuAddRow")->trigger();
        QVERIFY(session.user.Saw("together they can be 199"));
        QVERIFY(session.Heads().isVisible());
        QVERIFY(!session.Heads().visualRect(session.Heads().model()->index(0, 1)).isEmpty());
        QVERIFY(!session.Cells().visualRect(session.Cells().currentIndex()).isEmpty());
    }
};

int main(int argc, char* argv[])
{
    return RunInFusion<scenarios_editor_test>(argc, argv);
}

#include "scenarios_editor_test.moc"
