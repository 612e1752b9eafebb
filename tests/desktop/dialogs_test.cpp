// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/VeltError.h"
#include "data/Columns.h"
#include "dialogs/DesktopUser.h"
#include "dialogs/ListPickerDialog.h"
#include "dialogs/RangeDialog.h"
#include "dialogs/SelectionDialog.h"
#include "dialogs/frmASCIIWizard.h"
#include "dialogs/frmContourRange.h"
#include "dialogs/frmInputParams.h"
#include "dialogs/frmNewFile.h"
#include "dialogs/frmNumberFormat.h"
#include "dialogs/frmOptions.h"
#include "dialogs/frmStartVals.h"
#include "files/AsciiWizard.h"
#include "support/ScriptedUser.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QHeaderView>
#include <QInputDialog>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QRadioButton>
#include <QTableView>
#include <QTimer>
#include <QtTest>
#include <array>
#include <map>
#include <numeric>
#include <utility>

namespace
{
/// A dialog on the screen and the hands on it.
class Desk
{
public:
    explicit Desk(QDialog& dialog) : m_dialog(dialog)
    {
        dialog.show();
        QApplication::setActiveWindow(&dialog);
        (void)QTest::qWaitForWindowActive(&dialog);
    }
    template <typename Widget = QLineEdit>
    Widget* The(const char* name) const
    {
        return m_dialog.findChild<Widget*>(QString::fromLatin1(name));
    }
    /// Puts the cursor into the box and types over what stands there.
    void Type(const char* box, const char* text) const
    {
        The(box)->setFocus();
        The(box)->selectAll();
        QTest::keyClicks(The(box), QString::fromLatin1(text));
    }
    void Leave(const char* box) const
    {
        QTest::keyClick(The(box), Qt::Key_Tab);
        QCoreApplication::processEvents();
    }
    void Enter(const char* box) const
    {
        QTest::keyClick(The(box), Qt::Key_Return);
        QCoreApplication::processEvents();
    }
    void Click(const char* button) const
    {
        QTest::mouseClick(The<QAbstractButton>(button), Qt::LeftButton);
        QCoreApplication::processEvents();
    }
    bool HasFocusSelected(const char* box) const
    {
        return m_dialog.focusWidget() == The(box) && The(box)->selectedText() == The(box)->text();
    }

private:
    QDialog& m_dialog;
};

InputParams Inputs(std::int32_t model, std::int32_t fitOp = 1)
{
    InputParams params;
    params.WhichMeth = model;
    params.FitOp = fitOp;
    params.modelTitle = "PROD. MODEL(FOX)      ";
    return params;
}

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

class dialogs_test : public QObject
{
    Q_OBJECT

private:
    ScriptedUser m_user;

private slots:
    void init() { m_user = ScriptedUser(); }

    void EachRefusedInputShowsItsSentenceAndKeepsTheFocus_data()
    {
        QTest::addColumn<QString>("box");
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("sentence");
        QTest::newRow("proportion") << "txtInitProp"
                                    << "1.5"
                                    << "Initial Proportion must lie in the range 0 <= I.P <= 1";
        QTest::newRow("lag") << "txtLag"
                             << "-1"
                             << "Time Lag must be >=0 ";
        QTest::newRow("shape") << "txtZ"
                               << "0"
                               << "Z shape parameter must be > 0";
        QTest::newRow("comma") << "txtInitProp"
                               << "0,5"
                               << "Initial Proportion must lie in the range 0 <= I.P <= 1";
    }
    void EachRefusedInputShowsItsSentenceAndKeepsTheFocus()
    {
        QFETCH(QString, box);
        QFETCH(QString, typed);
        QFETCH(QString, sentence);
        const QByteArray name = box.toLatin1();
        frmInputParams form(m_user, Inputs(6), nullptr);
        const Desk desk(form);

        desk.Type(name, typed.toLatin1());
        desk.Leave(name);
        QCOMPARE(m_user.messages.size(), std::size_t{1});
        QCOMPARE(QString::fromStdString(m_user.messages.back().text), sentence);
        QCOMPARE(m_user.messages.back().title, std::string("VELT 3.0"));
        QVERIFY(desk.HasFocusSelected(name));

        desk.Enter(name);
        QCOMPARE(m_user.messages.size(), std::size_t{2});
        desk.Click("cmdOK");
        QCOMPARE(m_user.messages.size(), std::size_t{3}); // once, not also for leaving the box
        QVERIFY(form.isVisible());
    }

    void NegativeMortalityIsRefusedAndAGoodOneIsGivenBack()
    {
        frmInputParams form(m_user, Inputs(1), nullptr);
        const Desk desk(form);
        desk.Type("txtMort", "-0.1");
        desk.Enter("txtMort");
        QVERIFY(m_user.Saw("Natural Mortality must be >= 0"));
        desk.Type("txtMort", "0.35");
        desk.Enter("txtMort");
        QCOMPARE(form.result(), int(QDialog::Accepted));
        QCOMPARE(form.Record().Mort, 0.35F);
    }

    void ATimeLagOfTwoPointSevenIsShownAndStoredAsThree()
    {
        frmInputParams form(m_user, Inputs(5), nullptr);
        const Desk desk(form);
        desk.Type("txtLag", "2.7");
        desk.Leave("txtLag");
        QCOMPARE(desk.The("txtLag")->text(), QString("3"));
        QCOMPARE(form.Record().TimeLag, std::int16_t{3});
        QVERIFY(m_user.messages.empty());
    }

    void TheFieldsFollowTheModel()
    {
        frmInputParams depletion(m_user, Inputs(1), nullptr);
        const Desk first(depletion);
        QVERIFY(first.The("txtMort")->isVisible());
        for (const char* box : {"txtInitProp", "txtLag", "txtZ"})
            QVERIFY2(!first.The(box)->isVisible(), box);
        QVERIFY(!first.The<QWidget>("lblZ")->isVisible());
        QVERIFY(!first.The<QWidget>("chkViewMin")->isVisible());

        frmInputParams production(m_user, Inputs(6), nullptr);
        const Desk second(production);
        QVERIFY(!second.The("txtMort")->isVisible());
        for (const char* box : {"txtInitProp", "txtLag", "txtZ"})
            QVERIFY2(second.The(box)->isVisible(), box);
        QVERIFY(second.The<QWidget>("chkViewMin")->isVisible());
    }

    void TheErrorModelOfTheRecordIsTheOneThatIsMarked()
    {
        const std::array<const char*, 4> options{"optLSQ", "optLogT", "optGamma", "optLSQW"};
        for (std::int32_t fitOp = 1; fitOp <= 4; ++fitOp) {
            frmInputParams form(m_user, Inputs(5, fitOp), nullptr);
            for (std::int32_t option = 1; option <= 4; ++option) {
                const char* name = options[static_cast<std::size_t>(option - 1)];
                QCOMPARE(form.findChild<QRadioButton*>(name)->isChecked(), option == fitOp);
            }
        }
    }

    void ARegressionClearsAndDisablesTheTwoSwitches()
    {
        InputParams params = Inputs(2, 3);
        params.SetStartingEstimates = params.PlotEvaluations = true;
        frmInputParams form(m_user, params, nullptr);
        const Desk desk(form);
        QVERIFY(desk.The<QCheckBox>("chkSetMan")->isChecked());

        desk.The<QRadioButton>("optLSQ")->click();
        for (const char* box : {"chkSetMan", "chkViewMin"}) {
            QVERIFY(!desk.The<QCheckBox>(box)->isEnabled());
            QVERIFY(!desk.The<QCheckBox>(box)->isChecked());
        }
        desk.The<QRadioButton>("optLogT")->click(); // a mouse would have to hit the words
        QVERIFY(desk.The<QCheckBox>("chkSetMan")->isEnabled());
        QVERIFY(!desk.The<QCheckBox>("chkSetMan")->isChecked());
        desk.Click("cmdOK");
        QCOMPARE(form.Record().FitOp, 2);
        QVERIFY(!form.Record().SetStartingEstimates);
    }

    void WeightedLeastSquaresNeedsVariances()
    {
        frmInputParams without(m_user, Inputs(1, 4), nullptr);
        QVERIFY(!without.findChild<QRadioButton*>("optLSQW")->isEnabled());
        InputParams params = Inputs(1);
        params.hasVariances = true;
        frmInputParams with(m_user, params, nullptr);
        QVERIFY(with.findChild<QRadioButton*>("optLSQW")->isEnabled());
    }

    void TheInputDialogCarriesTheModelsTitleAndTheTablesCaptions()
    {
        frmInputParams form(m_user, Inputs(4), nullptr);
        QCOMPARE(form.windowTitle(), QString("PROD. MODEL(FOX)"));
        QCOMPARE(form.findChild<QRadioButton*>("optGamma")->text(), QString("Gamma"));
        QCOMPARE(form.findChild<QPushButton*>("cmdOK")->text(), QString("&OK"));
        QCOMPARE(form.findChild<QPushButton*>("cmdCancel")->text(), QString("&Cancel"));
    }

    void EachInputAndErrorModelCarriesItsOwnCaption()
    {
        frmInputParams form(m_user, Inputs(6), nullptr);
        const std::pair<const char*, const char*> captions[] = {{"lblInitProp", "Initial Proportion:"},
                                                                {"lblLag", "Time:"},
                                                                {"lblZ", "Z Shape Parameter:"},
                                                                {"lblMort", "Mortality:"}};
        for (const auto& [label, words] : captions)
            QCOMPARE(form.findChild<QLabel*>(label)->text(), QString(words));
        const std::pair<const char*, const char*> buttons[] = {
            {"optLSQ", "Least Squares (Unweighted)"},
            {"optLogT", "Log Transform"},
            {"optGamma", "Gamma"},
            {"optLSQW", "Least Squares (Weighted)"},
            {"chkSetMan", "Set Starting Estimates Manually"},
            {"chkViewMin", "View Minimisation Graphically"}};
        for (const auto& [button, words] : buttons)
            QCOMPARE(form.findChild<QAbstractButton*>(button)->text(), QString(words));
        QCOMPARE(form.findChild<QGroupBox*>("fmeError")->title(), QString("Error Model"));
        QCOMPARE(form.findChild<QGroupBox*>("fmeOptions")->title(), QString("Options"));
        QCOMPARE(frmInputParams(m_user, InputParams(), nullptr).windowTitle(), QString("Input Parameters"));
    }

    void EachFieldOfTheOptionsCarriesItsOwnCaption()
    {
        frmOptions form(m_user, MinimiserOptions{}, nullptr);
        QCOMPARE(form.windowTitle(), QString("Options"));
        QStringList frames;
        for (const QGroupBox* frame : form.findChildren<QGroupBox*>())
            frames += frame->title();
        QCOMPARE(frames, QStringList({"Minimisation", "Minimisation converges on"}));
        std::map<QString, QString> captions; // by the box that each belongs to
        for (const QLabel* label : form.findChildren<QLabel*>())
            if (label->buddy())
                captions[label->buddy()->objectName()] = label->text();
        QCOMPARE(captions["txtOption0"], QString("Maximum Iterations"));
        QCOMPARE(captions["txtOption1"], QString("Number of Bootstraps"));
        QCOMPARE(captions["txtOption2"], QString("Function Tolerance"));
        QCOMPARE(captions["txtOption3"], QString("Parameter Tolerance"));
        const std::pair<const char*, const char*> buttons[] = {
            {"optCO0", "Either parameter or function value"},
            {"optCO1", "Both parameter and function value"},
            {"cmdOK", "&OK"},
            {"cmdCancel", "&Cancel"},
            {"cmdDefault", "&Defaults"}};
        for (const auto& [button, words] : buttons)
            QCOMPARE(form.findChild<QAbstractButton*>(button)->text(), QString(words));
    }

    void TheStartingValuesCarryTheirWordsAndTheNamesOfTheParameters()
    {
        frmStartVals form(m_user, StartVals{"K", "r", 100.0, 0.5}, nullptr);
        QCOMPARE(form.windowTitle(), QString("Parameter Starting Values"));
        QCOMPARE(form.findChild<QGroupBox*>()->title(), QString("Starting Values"));
        std::map<QString, QString> captions;
        for (const QLabel* label : form.findChildren<QLabel*>())
            if (label->buddy())
                captions[label->buddy()->objectName()] = label->text();
        QCOMPARE(captions["txtParam1"], QString("K"));
        QCOMPARE(captions["txtParam2"], QString("r"));
        for (const char* box : {"chkParam1", "chkParam2"})
            QCOMPARE(form.findChild<QCheckBox*>(box)->text(), QString("Fixed"));
        QCOMPARE(form.findChild<QPushButton*>("cmdOK")->text(), QString("&OK"));
        QCOMPARE(form.findChild<QPushButton*>("cmdCancel")->text(), QString("&Cancel"));
    }

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

    void TheButtonsComeLastInTheTabOrder()
    {
        frmInputParams form(m_user, Inputs(3), nullptr);
        const Desk desk(form);
        QCOMPARE(form.focusWidget(), desk.The("txtInitProp"));
        desk.Leave("txtInitProp");
        QCOMPARE(form.focusWidget(), desk.The("txtMort"));
    }

    void CancelPressedOverABadValueClosesWithoutAMessage()
    {
        frmStartVals form(m_user, StartVals{"K", "r", 100.0, 0.5}, nullptr);
        const Desk desk(form);
        desk.Type("txtParam1", "bad");
        desk.Click("cmdCancel");
        QVERIFY(!form.isVisible());
        QVERIFY(m_user.messages.empty());
        QCOMPARE(form.result(), int(QDialog::Rejected));
    }

    void StartingValuesAreAtLeastNothing()
    {
        frmStartVals form(m_user, StartVals{"K", "r", 100.0, 0.5, false, true}, nullptr);
        const Desk desk(form);
        QCOMPARE(desk.The("txtParam1")->text(), QString("100"));
        QVERIFY(desk.The<QCheckBox>("chkParam2")->isChecked());
        desk.Type("txtParam1", "-2");
        desk.Leave("txtParam1");
        QVERIFY(m_user.Saw("Starting Value must be >= 0"));
        QVERIFY(desk.HasFocusSelected("txtParam1"));
        desk.Type("txtParam1", "250");
        desk.Click("chkParam1");
        desk.Click("cmdOK");
        QCOMPARE(form.Record().param1, 250.0);
        QVERIFY(form.Record().Fixed1);
        QVERIFY(form.Record().Fixed2);
    }

    void AKBoxHoldingAHalfIsRefusedAnRBoxIsNot()
    {
        frmContourRange form(m_user, ContourRange{"K", "r", 1, 2, 0.1, 1, 20}, nullptr);
        const Desk desk(form);
        desk.Type("txtP2Lo", "0.5");
        desk.Leave("txtP2Lo");
        QVERIFY(m_user.messages.empty());
        desk.Type("txtP1Lo", "0.5");
        desk.Leave("txtP1Lo");
        QVERIFY(m_user.Saw("Value must be in the range 1 - 3.4E+38"));
        QVERIFY(desk.HasFocusSelected("txtP1Lo"));
    }

    void TheContourDialogCarriesItsWordsAndTheNamesOfTheParameters()
    {
        frmContourRange form(m_user, ContourRange{"K", "r", 1, 2, 0.1, 1, 20}, nullptr);
        QCOMPARE(form.windowTitle(), QString("Contour Ranges"));
        QCOMPARE(form.findChild<QGroupBox*>()->title(), QString("Specify Contour Ranges"));
        QStringList labels;
        for (const QLabel* label : form.findChildren<QLabel*>())
            labels += label->text();
        for (const char* words : {"Low", "High", "K", "r", "Number of Points to Plot."})
            QVERIFY2(labels.contains(QString(words)), words);
        QCOMPARE(form.findChild<QPushButton*>("cmdOK")->text(), QString("&OK"));
        QCOMPARE(form.findChild<QPushButton*>("cmdCancel")->text(), QString("&Cancel"));
    }

    void EqualLowAndHighValuesGiveInvalidRangeSpecified()
    {
        frmContourRange form(m_user, ContourRange{"K", "r", 5, 5, 0.1, 1, 20}, nullptr);
        const Desk desk(form);
        desk.Click("cmdOK");
        QVERIFY(m_user.Saw("Invalid Range specified"));
        QVERIFY(desk.HasFocusSelected("txtP1Lo"));
        QVERIFY(form.isVisible());
        desk.Type("txtP1HI", "6");
        desk.Type("txtPoints", "30");
        desk.Click("cmdOK");
        QVERIFY(!form.isVisible());
        QCOMPARE(form.Record().Param1Hi, 6.0);
        QCOMPARE(form.Record().ContEvals, std::int16_t{30});
    }

    void ABadTextForANamelessRangeIsSelectedWithoutWords()
    {
        frmContourRange form(m_user, ContourRange{"Lambda", "r", 1, 2, 0.1, 1, 20}, nullptr);
        const Desk desk(form);
        desk.Type("txtP1Lo", "low");
        desk.Leave("txtP1Lo");
        QVERIFY(m_user.messages.empty());
        QVERIFY(desk.HasFocusSelected("txtP1Lo"));
    }

    void BootstrapsAreRefusedAboveAThousand()
    {
        frmOptions form(m_user, MinimiserOptions{}, nullptr);
        const Desk desk(form);
        desk.Type("txtOption1", "1001");
        desk.Leave("txtOption1");
        QVERIFY(m_user.Saw("Value must be in the range 0 < NumBootstraps <=1000 "));
        desk.Type("txtOption1", "1000");
        desk.Leave("txtOption1");
        QCOMPARE(m_user.messages.size(), std::size_t{1});
        desk.Type("txtOption2", "none");
        desk.Leave("txtOption2");
        QVERIFY(m_user.Saw("Value must be numeric and > 0 "));
    }

    void AfterDefaultsOKReturnsExactlyTheDefaults()
    {
        frmOptions form(m_user, MinimiserOptions{0, 20, 1e-3F, 1e-3F, 77}, nullptr);
        const Desk desk(form);
        QVERIFY(desk.The<QRadioButton>("optCO0")->isChecked());
        QVERIFY(desk.The<QPushButton>("cmdDefault")->isEnabled());
        desk.Type("txtOption0", "bad"); // Defaults replaces it, so there is nothing to complain about
        desk.Click("cmdDefault");
        QVERIFY(!desk.The<QPushButton>("cmdDefault")->isEnabled());
        QCOMPARE(desk.The("txtOption2")->text(), QString("1E-07"));
        desk.Click("cmdOK");
        QVERIFY(m_user.messages.empty());
        QVERIFY(form.Record() == MinimiserOptions{});
    }

    void AnAcceptedFieldIsRewrittenAndTheDefaultsButtonFollows()
    {
        frmOptions form(m_user, MinimiserOptions{}, nullptr);
        const Desk desk(form);
        QVERIFY(!desk.The<QPushButton>("cmdDefault")->isEnabled());
        desk.Type("txtOption0", "12.7");
        desk.Leave("txtOption0");
        QCOMPARE(desk.The("txtOption0")->text(), QString("13"));
        QVERIFY(desk.The<QPushButton>("cmdDefault")->isEnabled());
    }

    // It used to be Defaults, which threw the entry away.
    void EnterInAFieldOfTheOptionsIsOK()
    {
        frmOptions form(m_user, MinimiserOptions{}, nullptr);
        const Desk desk(form);
        QVERIFY(desk.The<QPushButton>("cmdOK")->isDefault());
        desk.Type("txtOption0", "800");
        desk.Leave("txtOption0"); // Defaults is enabled from here on
        desk.Type("txtOption1", "900");
        desk.Enter("txtOption1");
        QCOMPARE(form.result(), int(QDialog::Accepted));
        QCOMPARE(form.Record().intMaxIts, std::int16_t{800});
        QCOMPARE(form.Record().BS, std::int16_t{900});
    }

    void ADialogIsWideEnoughForItsTitle()
    {
        RangeQuestion question{"Confidence Interval Range", "?", "L", "H", 0.0, 1.0};
        RangeDialog form(m_user, question, nullptr);
        const Desk desk(form);
        QVERIFY(form.width() >= WidthForTitle(form, form.windowTitle()));
    }

    void TheInputBoxShowsItsWholeTitleAndGivesTheText()
    {
        DesktopUser person(nullptr);
        int room = -1;
        QTimer::singleShot(0, [&room] {
            auto* box = qobject_cast<QInputDialog*>(QApplication::activeModalWidget());
            room = box->width() - WidthForTitle(*box, box->windowTitle());
            box->setTextValue("1200");
            box->accept();
        });
        const auto answer =
            person.InputBox("Initial Population (N1) ", "Parameter Estimation Starting Values", "900");
        QVERIFY(room >= 0);
        QVERIFY(answer == std::optional<std::string>("1200"));
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

    void TheChoiceIsGivenByItsPosition()
    {
        Selection selection{"New Model", "Select Model to Fit;", {"ONE  ", "TWO"}, 0};
        SelectionDialog form(m_user, selection, nullptr);
        const Desk desk(form);
        QCOMPARE(desk.The<QListWidget>("lstItems")->item(0)->text(), QString("ONE  "));
        desk.The<QListWidget>("lstItems")->setCurrentRow(1);
        desk.Click("cmdOK");
        QCOMPARE(form.Chosen(), std::size_t{2});
    }

    void LevelsAreGivenBackByOKAndLeftAsTheyWereByCancel()
    {
        RangeQuestion question{"Confidence Interval Range", "Levels", "Low", "High", 0.025, 0.975};
        const auto leave = [](const char* button) {
            QTimer::singleShot(0, [button] {
                QWidget* form = QApplication::activeModalWidget();
                form->findChild<QLineEdit*>("txtLow")->setText("0.1");
                form->findChild<QPushButton*>(button)->click();
            });
        };
        leave("cmdCancel");
        QVERIFY(!RangeDialog::Ask(m_user, question, nullptr));
        QCOMPARE(question.low, 0.025);
        leave("cmdOK");
        QVERIFY(RangeDialog::Ask(m_user, question, nullptr));
        QCOMPARE(question.low, 0.1);
    }

    void LevelsOfA32BitFloatAreShownWithoutNoise()
    {
        RangeQuestion question{
            "Confidence Interval Range", "Levels", "Low", "High", static_cast<double>(0.025F),
            static_cast<double>(0.975F)};
        RangeDialog form(m_user, question, nullptr);
        const Desk desk(form);
        QCOMPARE(desk.The("txtLow")->text(), QString("0.025"));
        desk.Type("txtLow", "0.9");
        desk.Type("txtHigh", "0.1"); // the order is not this dialog's business
        desk.Click("cmdOK");
        QCOMPARE(form.Record().low, 0.9);
        QCOMPARE(form.Record().high, 0.1);
    }

    void TheListPickerMovesOneOrAllAndKeepsTheCommonOrder()
    {
        ScriptedUser user;
        ListPicker picker{.caption = "Inserting Columns",
                          .prompt = "Select Columns to be inserted;",
                          .leftCaption = "UnSelected",
                          .rightCaption = "Selected",
                          .items = {{"A"}, {"B", true}, {"C"}, {"D"}}};
        ListPickerDialog form(user, picker, nullptr);
        const Desk desk(form);
        QCOMPARE(form.windowTitle(), QString("Inserting Columns"));
        auto* left = desk.The<QListWidget>("lstUnSelected");
        auto* right = desk.The<QListWidget>("lstSelected");
        const auto texts = [](const QListWidget* list) {
            QString all;
            for (int i = 0; i < list->count(); ++i)
                all += list->item(i)->text();
            return all;
        };
        QCOMPARE(texts(left), QString("ACD"));
        QCOMPARE(texts(right), QString("B"));
        left->setCurrentRow(2);
        desk.Click("cmdOneRight");
        left->setCurrentRow(0);
        desk.Click("cmdOneRight");
        QCOMPARE(texts(right), QString("ABD"));
        QCOMPARE(left->currentRow(), 0); // the next one stands ready
        desk.Click("cmdAllRight");
        QCOMPARE(texts(right), QString("ABCD"));
        QVERIFY(!desk.The<QAbstractButton>("cmdOneRight")->isEnabled());
        QVERIFY(!desk.The<QAbstractButton>("cmdAllRight")->isEnabled());
        right->clearSelection();
        right->setCurrentRow(1);
        desk.Click("cmdOneLeft");
        QCOMPARE(texts(left), QString("B"));
        desk.Click("cmdAllLeft");
        QCOMPARE(texts(left), QString("ABCD"));
        QVERIFY(!desk.The<QAbstractButton>("cmdAllLeft")->isEnabled());
        emit left->itemDoubleClicked(left->item(0));
        QCOMPARE(right->count(), 1);
    }

    void TheListPickerGivesItsChoiceBackOnOkAndLeavesTheRecordOnCancel()
    {
        ScriptedUser user;
        ListPicker picker{
            .caption = "c", .prompt = "p", .leftCaption = "l", .rightCaption = "r", .items = {{"A"}, {"B"}}};
        const auto answer = [](const char* button) {
            QTimer::singleShot(0, qApp, [button] {
                auto* form = QApplication::activeModalWidget();
                form->findChild<QAbstractButton*>("cmdAllRight")->click();
                form->findChild<QAbstractButton*>(QString::fromLatin1(button))->click();
            });
        };
        answer("cmdCancel");
        QVERIFY(!ListPickerDialog::Ask(user, picker, nullptr));
        QVERIFY(!picker.items[0].selected);
        answer("cmdOK");
        QVERIFY(ListPickerDialog::Ask(user, picker, nullptr));
        QVERIFY(picker.items[0].selected && picker.items[1].selected);
    }

    void TheNumberFormatDialogOpensOnTheFormatAndShowsTheSampleInEachChoice()
    {
        ScriptedUser user;
        NumberFormatChoice choice = ChoiceOf("#,0.0");
        choice.sample = 12345.678F;
        frmNumberFormat form(user, choice, nullptr);
        const Desk desk(form);
        auto* category = desk.The<QListWidget>("lstFormat");
        auto* places = desk.The<QListWidget>("lstDecPlaces");
        QCOMPARE(category->count(), 3);
        QCOMPARE(places->count(), 16);
        QCOMPARE(category->currentItem()->text(), QString("Standard"));
        QCOMPARE(places->currentRow(), 1);
        QCOMPARE(desk.The<QLabel>("lblSample")->text(), QString("12,345.7"));
        category->setCurrentRow(2);
        QCOMPARE(desk.The<QLabel>("lblSample")->text(), QString("1.2E+04"));
        places->setCurrentRow(3);
        QCOMPARE(desk.The<QLabel>("lblSample")->text(), QString("1.235E+04"));
        QCOMPARE(form.Choice().category, NumberCategory::Scientific);
        QCOMPARE(form.Choice().decPlaces, 3);
        places->setCurrentRow(-1);
        QVERIFY(!desk.The<QPushButton>("cmdOK")->isEnabled());
    }

    void TheNewDataSetDialogTakesDescriptionRangeAndColumns()
    {
        ScriptedUser user;
        frmNewFile form(user, nullptr);
        const Desk desk(form);
        QCOMPARE(desk.The<QListWidget>("lstUnSelected")->count(), 9);
        QCOMPARE(desk.The<QListWidget>("lstUnSelected")->item(8)->text(), QString("Recruit. Index"));
        QCOMPARE(desk.The<QListWidget>("lstSelected")->count(), 0);
        desk.Type("txtDescription", "Ling");
        desk.Type("TxtTimeP0", "1990");
        desk.Type("TxtTimeP1", "1999");
        desk.The<QListWidget>("lstUnSelected")->setCurrentRow(3);
        desk.Click("cmdOneRight");
        desk.Click("cmdOK");
        QCOMPARE(form.result(), int(QDialog::Accepted));
        QCOMPARE(QString::fromStdString(form.Record().FileDescription), QString("Ling"));
        QCOMPARE(form.Record().MinTimeP, 1990);
        QCOMPARE(form.Record().MaxTimeP, 1999);
        QVERIFY((form.Record().columns == std::vector<int>{columns::Effort}));
        QVERIFY(user.messages.empty());
    }

    void TheNewDataSetDialogCarriesItsWordsAndEachBoxItsOwn()
    {
        ScriptedUser user;
        frmNewFile form(user, nullptr);
        const Desk desk(form);
        QCOMPARE(form.windowTitle(), QString("New Data Set"));
        QCOMPARE(desk.The<QPushButton>("cmdOK")->text(), QString("&OK"));
        QCOMPARE(desk.The<QPushButton>("cmdCancel")->text(), QString("&Cancel"));
        QStringList frames;
        for (const QGroupBox* frame : form.findChildren<QGroupBox*>())
            frames += frame->title();
        QCOMPARE(frames, QStringList({"Enter File Details", "Columns to Include"}));
        QStringList words;
        QStringList boxes;
        for (const QLabel* label : form.findChildren<QLabel*>()) {
            words += label->text();
            boxes += label->buddy() ? label->buddy()->objectName() : QString();
        }
        for (const char* word : {"File Name", "File Description", "Time Period", "Min.", "Max.",
                                 "Unselected Columns", "Selected Columns"})
            QVERIFY2(words.contains(word), word);
        QCOMPARE(boxes[words.indexOf("File Description")], QString("txtDescription"));
        QCOMPARE(boxes[words.indexOf("Min.")], QString("TxtTimeP0"));
        QCOMPARE(boxes[words.indexOf("Max.")], QString("TxtTimeP1"));
        QCOMPARE(boxes[words.indexOf("Unselected Columns")], QString("lstUnSelected"));
        QCOMPARE(boxes[words.indexOf("Selected Columns")], QString("lstSelected"));
        QVERIFY(!desk.The<QAbstractButton>("cmdOneLeft")->isEnabled());
        QVERIFY(!desk.The<QAbstractButton>("cmdAllLeft")->isEnabled());
        desk.Click("cmdOneRight"); // the first column stands ready
        QCOMPARE(desk.The<QListWidget>("lstSelected")->item(0)->text(), QString("Tot. Catch Wt"));
    }

    void TheNumberFormatDialogCarriesItsWordsAndItsSampleCanBeCopied()
    {
        ScriptedUser user;
        frmNumberFormat form(user, ChoiceOf("0.00"), nullptr);
        const Desk desk(form);
        QCOMPARE(form.windowTitle(), QString("Number Format"));
        QCOMPARE(desk.The<QPushButton>("cmdOK")->text(), QString("&OK"));
        QCOMPARE(desk.The<QPushButton>("cmdCancel")->text(), QString("&Cancel"));
        QCOMPARE(form.findChild<QGroupBox*>()->title(), QString("Sample"));
        QStringList words;
        for (const QLabel* label : form.findChildren<QLabel*>())
            words += label->text();
        QVERIFY(words.contains("Category") && words.contains("Decimal Places"));
        const auto* categories = desk.The<QListWidget>("lstFormat");
        QCOMPARE(categories->item(0)->text(), QString("Fixed"));
        QCOMPARE(categories->item(2)->text(), QString("Scientific"));
        QVERIFY(desk.The<QLabel>("lblSample")->textInteractionFlags() & Qt::TextSelectableByMouse);
    }

    void LeavingATimeBoxTestsItAndTheFocusComesBack()
    {
        ScriptedUser user;
        frmNewFile form(user, nullptr);
        const Desk desk(form);
        desk.Type("TxtTimeP0", "1.5");
        desk.Leave("TxtTimeP0");
        QVERIFY(user.Saw("Time Period must be a positive integer"));
        QVERIFY(desk.HasFocusSelected("TxtTimeP0"));
    }

    void TheNewDataSetDialogRefusesARangeAndAnEmptyChoiceOfColumns()
    {
        ScriptedUser user;
        frmNewFile form(user, nullptr);
        const Desk desk(form);
        desk.Type("TxtTimeP0", "5");
        desk.Type("TxtTimeP1", "10"); // the texts are compared; deliberate
        desk.Click("cmdOK");
        QVERIFY(user.Saw("Illegal Range Specified for Time Period"));
        QVERIFY(desk.HasFocusSelected("TxtTimeP0"));
        desk.Type("TxtTimeP0", "1");
        desk.Click("cmdOK");
        QVERIFY(user.Saw("You must select at least one data column"));
        QVERIFY(form.isVisible());
        desk.Click("cmdAllRight");
        desk.Click("cmdOK");
        QVERIFY(!form.isVisible());
        QCOMPARE(form.Record().columns.size(), std::size_t{9});
    }
};

QTEST_MAIN(dialogs_test)
#include "dialogs_test.moc"
