// SPDX-License-Identifier: GPL-3.0-or-later
// The wizard that imports a table.
#include "DialogDesk.h"
#include "base/VeltError.h"
#include "data/Columns.h"
#include "dialogs/frmASCIIWizard.h"
#include "files/AsciiWizard.h"
#include "support/ScriptedUser.h"

#include <QComboBox>
#include <QGroupBox>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QTableView>
#include <QTimer>

#include <numeric>
#include <utility>

namespace
{
/// A text file of three columns: the periods, then two columns of values.
AsciiWizard TextFile(std::vector<double> periods = {1990, 1991, 1992})
{
    const std::vector<double> values(periods.size(), 1.5);
    std::vector<std::size_t> lines(periods.size());
    std::iota(lines.begin(), lines.end(), 3U); // behind the description and the headings
    return {"ling.txt",
            {"Ling", {"Year", "Boats", "Landed"}, {std::move(periods), values, values}, std::move(lines)},
            {"Tot. Catch Wt", "Tot. Catch Nums", "Mean Wt", "Effort", "Catch Wt", "Catch Nums",
             "Abundance Index", "Var. Abund. Index", "Recruit. Index"}};
}

/// A text file under these headings, of which the column at `years` alone rises by one.
AsciiWizard Headed(const std::vector<std::string>& headings, std::size_t years)
{
    AsciiWizard shape = TextFile();
    std::vector<std::vector<double>> values(headings.size(), {5, 7, 6});
    values.at(years) = {1990, 1991, 1992};
    return {"ling.txt", {"Ling", headings, std::move(values), shape.lines}, shape.columnTitles};
}

/// The hands on the import wizard.
struct ImportDesk : Desk {
    explicit ImportDesk(frmASCIIWizard& wizard) : Desk(wizard) {}
    QTableView* Table() const { return The<QTableView>("grdText"); }
    QComboBox* List() const { return The<QComboBox>("cboDBCols"); }
    bool Enabled(const char* button) const { return The<QPushButton>(button)->isEnabled(); }
    void ClickColumn(int column) const
    {
        const QRect cell = Table()->visualRect(Table()->model()->index(0, column));
        QTest::mouseClick(Table()->viewport(), Qt::LeftButton, Qt::NoModifier, cell.center());
    }
    QString Title(int column) const
    {
        return Table()->model()->headerData(column, Qt::Horizontal).toString();
    }
    QStringList Choices() const
    {
        QStringList texts;
        for (int i = 0; i < List()->count(); ++i)
            texts += List()->itemText(i);
        return texts;
    }
    void Choose(const char* title) const
    {
        List()->setCurrentText(QString::fromLatin1(title));
        emit List()->activated(List()->currentIndex()); // only a hand on the list counts
    }
    void ToStep2() const
    {
        Table()->selectColumn(0);
        Click("cmdNext");
    }
};
} // namespace

class dialogs_import_test : public QObject
{
    Q_OBJECT

private:
    ScriptedUser m_user;

private slots:
    void init() { m_user = ScriptedUser(); }

    void TheWizardCarriesItsWordsInBothSteps()
    {
        frmASCIIWizard wizard(m_user, TextFile());
        const ImportDesk desk(wizard);
        const std::pair<const char*, const char*> buttons[] = {{"cmdBack", "< &Back"},
                                                               {"cmdNext", "&Next >"},
                                                               {"cmdFinish", "&Finish"},
                                                               {"cmdCancel", "&Cancel"},
                                                               {"cmdHelp", "&Help"}};
        for (const auto& [button, words] : buttons)
            QCOMPARE(desk.The<QPushButton>(button)->text(), QString(words));
        QStringList labels;
        for (const QLabel* label : wizard.findChildren<QLabel*>())
            labels += label->text();
        for (const char* words : {"ASCII File for Import:", "VELT Columns:"})
            QVERIFY2(labels.contains(QString(words)), words);
        QCOMPARE(wizard.findChild<QGroupBox*>()->title(), QString("Timing"));
        QCOMPARE(desk.The<QLabel>("lblMsg")->text(),
                 QString("This screen is used for selecting the Timing Column. Select a column and press "
                         "next."));
        desk.ToStep2();
        QCOMPARE(wizard.findChild<QGroupBox*>()->title(), QString("Data Columns"));
        QCOMPARE(desk.The<QLabel>("lblMsg")->text(),
                 QString("This screen is used for assigning each column in the text file to the columns in "
                         "VELT. Highlight a text column and select the appropriate VELT column from the drop "
                         "down list."));
        QCOMPARE(desk.Choices().front(), QString("(None)"));
    }

    void NextWaitsForATimingColumnAndFinishForStepTwo()
    {
        frmASCIIWizard wizard(m_user, TextFile({1990, 1992, 1991})); // no column rises by one
        const ImportDesk desk(wizard);
        QCOMPARE(wizard.windowTitle(), QString("ASCII File Import : Step 1"));
        QVERIFY(!desk.Enabled("cmdBack") && !desk.Enabled("cmdNext") && !desk.Enabled("cmdFinish"));
        QVERIFY(!desk.List()->isEnabled());

        desk.Table()->selectColumn(0);
        QVERIFY(desk.Enabled("cmdNext"));
        desk.Click("cmdNext");
        QCOMPARE(wizard.windowTitle(), QString("ASCII File Import : Step 2"));
        QVERIFY(desk.Enabled("cmdBack") && !desk.Enabled("cmdNext") && desk.Enabled("cmdFinish"));
        QVERIFY(desk.Table()->isColumnHidden(0)); // the timing column gets no data column
        QVERIFY(desk.List()->isEnabled());
    }

    void AColumnThatRisesByOneIsPreselectedAndAnotherMayBeClicked()
    {
        frmASCIIWizard wizard(m_user, Headed({"Boats", "Year", "Landed"}, 1));
        const ImportDesk desk(wizard);
        QCOMPARE(wizard.Record().timingColumn, 2);
        QVERIFY(desk.Table()->selectionModel()->isColumnSelected(1));
        QVERIFY(desk.Enabled("cmdNext") && !desk.Enabled("cmdBack") && !desk.Enabled("cmdFinish"));

        desk.ClickColumn(2);
        QCOMPARE(wizard.Record().timingColumn, 3);
        QVERIFY(desk.Table()->selectionModel()->isColumnSelected(2));
        desk.Click("cmdNext");
        QVERIFY(desk.Table()->isColumnHidden(2) && !desk.Table()->isColumnHidden(1));
    }

    void APreselectedColumnFarToTheRightIsScrolledTo()
    {
        std::vector<std::string> headings(40, "a heading of some length");
        frmASCIIWizard wizard(m_user, Headed(headings, 39));
        const ImportDesk desk(wizard);
        QCOMPARE(wizard.Record().timingColumn, 40);
        const QRect cell = desk.Table()->visualRect(desk.Table()->model()->index(0, 39));
        QVERIFY(desk.Table()->viewport()->rect().contains(cell.center()));
    }

    void TheKeysGoOnWithThePreselectedColumnOrMarkAnother()
    {
        frmASCIIWizard taken(m_user, Headed({"Boats", "Year"}, 1));
        const ImportDesk desk(taken);
        QTest::keyClick(desk.Table(), Qt::Key_Return);
        QCOMPARE(taken.Record().step, 2);
        QCOMPARE(taken.Record().timingColumn, 2);

        frmASCIIWizard moved(m_user, Headed({"Boats", "Year"}, 1));
        const ImportDesk other(moved);
        QTest::keyClick(other.Table(), Qt::Key_Left);
        QCOMPARE(moved.Record().timingColumn, 1);
    }

    void AGuessedColumnLooksAndBehavesAsAChosenOne()
    {
        frmASCIIWizard wizard(m_user, Headed({"Year", "Effort (boat days)", "Landed", "CPUE"}, 0));
        const ImportDesk desk(wizard);
        desk.Click("cmdNext");
        QCOMPARE(desk.Title(1), QString("Effort (boat days)\nEffort"));
        QCOMPARE(desk.Title(2).trimmed(), QString("Landed"));
        QCOMPARE(desk.Title(3), QString("CPUE\nAbundance Index"));
        QCOMPARE(desk.List()->currentText(), QString("Effort")); // of the first column

        desk.Table()->selectColumn(2);
        QCOMPARE(desk.List()->currentText(), QString("(None)"));
        QVERIFY(!desk.Choices().contains("Effort") && !desk.Choices().contains("Abundance Index"));
        desk.Table()->selectColumn(3);
        QCOMPARE(desk.List()->currentText(), QString("Abundance Index"));

        desk.Choose("(None)");
        QCOMPARE(desk.Title(3).trimmed(), QString("CPUE"));
        desk.Table()->selectColumn(2);
        desk.Choose("Abundance Index");
        desk.Click("cmdFinish");
        QVERIFY(wizard.Record().OK);
        QCOMPARE(wizard.Record().enuUserColRef(2), columns::Effort);
        QCOMPARE(wizard.Record().enuUserColRef(3), columns::AbundIndex);
        QCOMPARE(wizard.Record().enuUserColRef(4), AsciiWizard::kNone);
    }

    void EveryGuessFreedIsADataSetWithNoColumns()
    {
        frmASCIIWizard wizard(m_user, Headed({"Year", "Effort"}, 0));
        const ImportDesk desk(wizard);
        desk.Click("cmdNext");
        desk.Choose("(None)");
        desk.Click("cmdFinish");
        QVERIFY(wizard.Record().OK);
        QCOMPARE(wizard.Record().enuUserColRef(2), AsciiWizard::kNone);
    }

    void AGuessedTitleWiderThanItsValuesIsShownWhole()
    {
        frmASCIIWizard wizard(m_user, Headed({"Year", "CPUE"}, 0));
        const ImportDesk desk(wizard);
        desk.Click("cmdNext");
        const QHeaderView* titles = desk.Table()->horizontalHeader();
        QVERIFY(titles->sectionSize(1) >= titles->fontMetrics().horizontalAdvance("Abundance Index"));
    }

    void BackForgetsGuessesAndChoicesAndNextGuessesAnew()
    {
        frmASCIIWizard wizard(m_user, Headed({"Year", "Effort", "Landed"}, 0));
        const ImportDesk desk(wizard);
        desk.Click("cmdNext");
        desk.Choose("(None)"); // the guess
        desk.Table()->selectColumn(2);
        desk.Choose("Catch Wt");
        desk.Click("cmdBack");
        QCOMPARE(desk.Title(1).trimmed(), QString("Effort"));
        QCOMPARE(desk.Title(2).trimmed(), QString("Landed"));
        QVERIFY(desk.Table()->selectionModel()->isColumnSelected(0));

        desk.Click("cmdNext");
        QCOMPARE(desk.Title(1), QString("Effort\nEffort"));
        QCOMPARE(desk.Title(2).trimmed(), QString("Landed"));

        desk.Click("cmdBack");
        desk.ClickColumn(1); // the periods are said to stand there
        desk.Click("cmdNext");
        QVERIFY(desk.Table()->isColumnHidden(1));
        QCOMPARE(wizard.Record().enuUserColRef(2), AsciiWizard::kNone);
    }

    void AMissingTimeLabelEndsTheWizardWithItsLine()
    {
        AsciiWizard file = Headed({"Year", "Effort"}, 0);
        file.missing[0] = 4;
        QTimer::singleShot(0, [] {
            auto* wizard = QApplication::activeModalWidget();
            const bool waits = !wizard->findChild<QPushButton*>("cmdNext")->isEnabled();
            wizard->findChild<QTableView*>("grdText")->selectColumn(0);
            if (!waits) // it was preselected
                qobject_cast<QDialog*>(wizard)->reject();
            wizard->findChild<QPushButton*>("cmdNext")->click();
        });
        try {
            frmASCIIWizard::Ask(m_user, file, nullptr);
            QFAIL("the import goes on");
        } catch (const ImportError& error) {
            QCOMPARE(error.line, std::size_t{4});
        }
    }

    void AnAssignedColumnStandsInTheHeadingAndLeavesTheOtherLists()
    {
        frmASCIIWizard wizard(m_user, TextFile());
        const ImportDesk desk(wizard);
        desk.ToStep2();
        desk.Choose("Effort");
        QCOMPARE(desk.Title(1), QString("Boats\nEffort"));

        desk.Table()->selectColumn(2);
        QVERIFY(!desk.Choices().contains("Effort"));
        QCOMPARE(desk.Choices().front(), QString("(None)"));
        QCOMPARE(desk.Choices().size(), 9); // "(None)" and the eight that are free

        desk.Table()->selectColumn(1);
        desk.Choose("(None)");
        QCOMPARE(desk.Title(1).trimmed(), QString("Boats"));
        desk.Table()->selectColumn(2);
        QVERIFY(desk.Choices().contains("Effort"));
    }

    void BackForgetsTheAssignmentsAndShowsTheTimingColumnAgain()
    {
        frmASCIIWizard wizard(m_user, TextFile());
        const ImportDesk desk(wizard);
        desk.ToStep2();
        desk.Choose("Effort");
        desk.Click("cmdBack");
        QCOMPARE(wizard.windowTitle(), QString("ASCII File Import : Step 1"));
        QVERIFY(!desk.Table()->isColumnHidden(0));
        QCOMPARE(desk.Title(1).trimmed(), QString("Boats"));
        QVERIFY(desk.Enabled("cmdNext")); // the timing column is still chosen
    }

    void FinishGivesTheChoicesAndNeedsNone()
    {
        frmASCIIWizard wizard(m_user, TextFile());
        const ImportDesk desk(wizard);
        desk.ToStep2();
        desk.Choose("Effort");
        desk.Click("cmdFinish");
        QCOMPARE(wizard.result(), int(QDialog::Accepted));
        QVERIFY(wizard.Record().OK);
        QCOMPARE(wizard.Record().enuUserColRef(2), 4);
        QCOMPARE(wizard.Record().enuUserColRef(3), AsciiWizard::kNone);
        QCOMPARE(wizard.Record().intMinTimeP, std::int16_t{1990});
        QCOMPARE(wizard.Record().intMaxTimeP, std::int16_t{1992});

        frmASCIIWizard none(m_user, TextFile());
        const ImportDesk other(none);
        other.ToStep2();
        other.Click("cmdFinish");
        QVERIFY(none.Record().OK);
    }

    void TheWizardIsDoneByKeysAlone()
    {
        frmASCIIWizard wizard(m_user, TextFile());
        const ImportDesk desk(wizard);
        QTest::keyClick(desk.Table(), Qt::Key_Space); // marks the column the cursor is in
        QTest::keyClick(desk.Table(), Qt::Key_Return);
        QCOMPARE(wizard.windowTitle(), QString("ASCII File Import : Step 2"));
        QTest::keyClick(desk.Table(), Qt::Key_Tab);
        QVERIFY(desk.List()->hasFocus());
        QTest::keyClick(desk.List(), Qt::Key_Down);
        QCOMPARE(desk.Title(1), QString("Boats\nTot. Catch Wt"));
        QTest::keyClick(desk.List(), Qt::Key_Return);
        QVERIFY(wizard.Record().OK);
    }

    void TheFileNameTakesTheRoomBesideItsCaptionAndTheTitlesHaveTheirTwoLines()
    {
        frmASCIIWizard wizard(m_user, TextFile());
        const ImportDesk desk(wizard);
        const auto* file = desk.The<QLabel>("lblFile");
        const auto captions = file->parentWidget()->findChildren<QLabel*>();
        QCOMPARE(captions.size(), 2);
        const QLabel* caption = captions.front() == file ? captions.back() : captions.front();
        QCOMPARE(caption->width(), caption->sizeHint().width());
        QVERIFY(file->width() > wizard.width() / 2);
        const QHeaderView* titles = desk.Table()->horizontalHeader();
        QVERIFY(titles->height() >= 2 * titles->fontMetrics().height());
    }

    void EscapeLeavesTheWizardWithNothingDone()
    {
        frmASCIIWizard wizard(m_user, TextFile());
        const ImportDesk desk(wizard);
        QTest::keyClick(&wizard, Qt::Key_Escape);
        QCOMPARE(wizard.result(), int(QDialog::Rejected));
        QVERIFY(!wizard.Record().OK);
    }

    void AFinishedWizardGivesItsRecordBackAndACancelledOneLeavesItAsItWas()
    {
        AsciiWizard file = TextFile();
        const auto assign = [] {
            auto* wizard = QApplication::activeModalWidget();
            wizard->findChild<QTableView*>("grdText")->selectColumn(0);
            wizard->findChild<QPushButton*>("cmdNext")->click();
            auto* list = wizard->findChild<QComboBox*>("cboDBCols");
            list->setCurrentText("Effort");
            emit list->activated(list->currentIndex());
        };
        QTimer::singleShot(0, [&assign] {
            assign();
            qobject_cast<QDialog*>(QApplication::activeModalWidget())->reject();
        });
        QVERIFY(!frmASCIIWizard::Ask(m_user, file, nullptr));
        QVERIFY(!file.OK);
        QCOMPARE(file.enuUserColRef(2), AsciiWizard::kNone);

        QTimer::singleShot(0, [&assign] {
            assign();
            QApplication::activeModalWidget()->findChild<QPushButton*>("cmdFinish")->click();
        });
        QVERIFY(frmASCIIWizard::Ask(m_user, file, nullptr));
        QVERIFY(file.OK);
        QCOMPARE(file.timingColumn, 1);
        QVERIFY(file.enuUserColRef(2) != AsciiWizard::kNone);
    }

    void AYearThatIsNoPeriodEndsTheWizardWithTheReason()
    {
        AsciiWizard file = TextFile({1990, 1991, 40000}); // 16 bits end at 32767
        QTimer::singleShot(0, [] {
            auto* wizard = QApplication::activeModalWidget();
            wizard->findChild<QTableView*>("grdText")->selectColumn(0);
            wizard->findChild<QPushButton*>("cmdNext")->click();
        });
        QVERIFY_EXCEPTION_THROWN(frmASCIIWizard::Ask(m_user, file, nullptr), VeltError);
        QVERIFY(!file.OK);
    }
};

QTEST_MAIN(dialogs_import_test)
#include "dialogs_import_test.moc"
