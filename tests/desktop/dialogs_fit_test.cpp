// SPDX-License-Identifier: GPL-3.0-or-later
// The dialogs of a fit: model, inputs, starting values, options, levels; what they leave untouched.
#include "DialogDesk.h"
#include "dialogs/RangeDialog.h"
#include "dialogs/SelectionDialog.h"
#include "dialogs/frmContourRange.h"
#include "dialogs/frmInputParams.h"
#include "dialogs/frmOptions.h"
#include "dialogs/frmStartVals.h"
#include "support/ScriptedUser.h"

#include <QCheckBox>
#include <QGroupBox>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QRadioButton>
#include <QTimer>

#include <array>
#include <map>
#include <utility>

namespace
{
InputParams Inputs(std::int32_t model, std::int32_t fitOp = 1)
{
    InputParams params;
    params.WhichMeth = model;
    params.FitOp = fitOp;
    params.modelTitle = "PROD. MODEL(FOX)      ";
    return params;
}
} // namespace

class dialogs_fit_test : public QObject
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

    void BoxesThatWereNotTouchedKeepTheirValueToTheBit()
    {
        // None of these has a text of as many digits as its box shows.
        constexpr double kThird = 1.0 / 3.0;
        constexpr float kFloatThird = 1.0F / 3.0F;
        frmContourRange contours(
            m_user, ContourRange{"K", "r", 7 * kThird, 8 * kThird, kThird, 2 * kThird, 20}, nullptr);
        Desk(contours).Click("cmdOK");
        QCOMPARE(contours.result(), int{QDialog::Accepted});
        QVERIFY(contours.Record().Param1Lo == 7 * kThird && contours.Record().Param1Hi == 8 * kThird);
        QVERIFY(contours.Record().Param2Lo == kThird && contours.Record().Param2Hi == 2 * kThird);

        frmStartVals starts(m_user, StartVals{"K", "r", 1000 * kThird, kThird, false, false}, nullptr);
        const Desk desk(starts);
        const QString offered = desk.The("txtParam1")->text();
        desk.Type("txtParam1", "5");
        desk.Leave("txtParam1");
        QCOMPARE(starts.Record().param1, 5.0);
        desk.Type("txtParam1", qPrintable(offered)); // back to what it was
        desk.Click("cmdOK");
        QCOMPARE(starts.result(), int{QDialog::Accepted});
        QVERIFY(starts.Record().param1 == 1000 * kThird && starts.Record().param2 == kThird);

        InputParams inputs = Inputs(6);
        inputs.InitProp = inputs.Z = kFloatThird;
        frmInputParams form(m_user, inputs, nullptr);
        Desk(form).Click("cmdOK");
        QCOMPARE(form.result(), int{QDialog::Accepted});
        QVERIFY(form.Record().InitProp == kFloatThird && form.Record().Z == kFloatThird);

        RangeDialog levels(m_user, {"Range", "Levels", "Low", "High", kThird, 2 * kThird}, nullptr);
        Desk(levels).Click("cmdOK");
        QVERIFY(levels.Record().low == kThird && levels.Record().high == 2 * kThird);
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
};

QTEST_MAIN(dialogs_fit_test)
#include "dialogs_fit_test.moc"
