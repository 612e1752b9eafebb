// SPDX-License-Identifier: GPL-3.0-or-later
// The window of the progress meter and that of the report.
#include "views/ProgressMeterWindow.h"
#include "views/frmParams.h"

#include <QClipboard>
#include <QGroupBox>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QScrollArea>
#include <QSignalSpy>
#include <QtTest>

namespace
{
ParameterReport Report()
{
    ParameterReport report;
    report.modelTitle = "PROD. MODEL(PELLA TOM)";
    report.fitTitle = "Log Fit   ";
    report.rSqr = "0.500";
    report.inputs = {{"Init. Proportion", "1"}, {"Time Lag", "0"}, {"Z Shape", "1.5"}};
    report.estimates = {{"K", "5230.5"}, {"q", "0.00025"}};
    return report;
}

/// A clock that the test moves on.
struct Hand {
    std::int64_t now = 0;
    ProgressMeterWindow::Clock Clock()
    {
        return [this] { return now; };
    }
};
} // namespace

class ViewsReportTest : public QObject
{
    Q_OBJECT

private slots:
    // Meter
    void TheMeterAppearsAfter300Milliseconds();
    void CancelAndEscapeAreSeenByTheLoop();
    void TheMeterTellsTheTimeLeft();
    void TwoWorksInARowShareOneWindow();
    void AMeterStartedAgainHasForgottenItsCancel();
    void TheMeterBlocksEveryOtherWindow();

    // Report
    void TheReportShowsItsRowsAndNoIntervalBlockWithoutBootstraps();
    void FewerRowsHideThoseOfTheEarlierFit();
    void IntervalsTakeRoomOnlyWhileTheyExist();
    void RemarksTakeRoomOnlyWhileTheyExistAndWrap();
    void ManyRemarksScrollAndTheFewOfTheNextFitDoNot();
    void TheButtonsOfTheReportAskForIntervalsAndHideTheWindow();
    void ALabelOfTheReportIsSelectableAndCopied();
};

void ViewsReportTest::TheMeterAppearsAfter300Milliseconds()
{
    Hand hand;
    ProgressMeterWindow meter(nullptr, hand.Clock());
    meter.Start("Calculating Bootstraps...", 500);

    hand.now = 299;
    meter.Value(10);
    QVERIFY(!meter.isVisible());
    hand.now = 320;
    meter.Value(20);

    QVERIFY(meter.isVisible());
    QCOMPARE(meter.findChild<QLabel*>("lblTitle")->text(), "Calculating Bootstraps...");
    QCOMPARE(meter.findChild<QProgressBar*>("barProgress")->text(), "4%"); // 20 of 500
    meter.Finish();
    QTRY_VERIFY(!meter.isVisible());
}

void ViewsReportTest::CancelAndEscapeAreSeenByTheLoop()
{
    for (const bool byKey : {false, true}) {
        Hand hand;
        ProgressMeterWindow meter(nullptr, hand.Clock());
        meter.Start("Drawing Contours...", 20);
        hand.now = 400;
        meter.Value(1);
        QVERIFY(!meter.Cancelled());

        if (byKey)
            QTest::keyClick(&meter, Qt::Key_Escape);
        else
            QTest::mouseClick(meter.findChild<QPushButton*>("cmdCancel"), Qt::LeftButton);

        QVERIFY(meter.Cancelled());
        QVERIFY(meter.isVisible()); // until the loop has ended
        QVERIFY(!meter.findChild<QPushButton*>("cmdCancel")->isEnabled());
        meter.Finish();
    }
}

// 100 of 400 steps in 20 s: the other 300 take 60 s.
void ViewsReportTest::TheMeterTellsTheTimeLeft()
{
    Hand hand;
    ProgressMeterWindow meter(nullptr, hand.Clock());
    meter.Start("Calculating Bootstraps...", 400);

    hand.now = 20000;
    meter.Value(100);

    QCOMPARE(meter.findChild<QLabel*>("lblTimeLeft")->text(), "1 min 0 s left");
    meter.Finish();
}

void ViewsReportTest::TwoWorksInARowShareOneWindow()
{
    Hand hand;
    ProgressMeterWindow meter(nullptr, hand.Clock());
    meter.Start("Calculating Bootstraps...", 500);
    hand.now = 400;
    meter.Value(500);

    meter.Finish();
    meter.Start("Sorting Bootstraps...", 2);
    QCoreApplication::processEvents();

    QVERIFY(meter.isVisible()); // it has not gone and come back
    QCOMPARE(meter.findChild<QLabel*>("lblTitle")->text(), "Sorting Bootstraps...");
    meter.Finish();
    QTRY_VERIFY(!meter.isVisible());
}

void ViewsReportTest::AMeterStartedAgainHasForgottenItsCancel()
{
    Hand hand;
    ProgressMeterWindow meter(nullptr, hand.Clock());
    meter.Start("Drawing Contours...", 20);
    meter.reject();
    QVERIFY(meter.Cancelled());

    meter.Start("Drawing Contours...", 20);

    QVERIFY(!meter.Cancelled());
    meter.Finish();
    meter.reject(); // a late press of Escape, with nothing left to cancel
    QVERIFY(!meter.Cancelled());
}

void ViewsReportTest::TheMeterBlocksEveryOtherWindow()
{
    ProgressMeterWindow meter;
    QCOMPARE(meter.windowModality(), Qt::ApplicationModal);
}

void ViewsReportTest::TheReportShowsItsRowsAndNoIntervalBlockWithoutBootstraps()
{
    frmParams window;

    window.Show(Report());

    QCOMPARE(window.windowTitle(), "Parameter Estimates");
    QCOMPARE(window.findChild<QLabel*>("lblMeth")->text(), "Model");
    QCOMPARE(window.findChild<QLabel*>("lblFitOp")->text(), "Fit");
    QCOMPARE(window.findChild<QLabel*>("lblRSqr")->text(), "R Sqr");
    QCOMPARE(window.findChild<QLabel*>("lblMethName")->text(), "PROD. MODEL(PELLA TOM)");
    QCOMPARE(window.findChild<QLabel*>("lblFitOpName")->text(), "Log Fit");
    QCOMPARE(window.findChild<QLabel*>("lblR2")->text(), "0.500");
    QCOMPARE(window.findChild<QLabel*>("lblIPName2")->text(), "Z Shape");
    QCOMPARE(window.findChild<QLabel*>("lblIPVal2")->text(), "1.5");
    QCOMPARE(window.findChild<QLabel*>("lblMPVal0")->text(), "5230.5");
    QVERIFY(window.findChild<QLabel*>("lblMPVal0")->alignment().testFlag(Qt::AlignRight));
    QVERIFY(!window.findChild<QGroupBox*>("picCI")->isVisible());
}

void ViewsReportTest::FewerRowsHideThoseOfTheEarlierFit()
{
    frmParams window;
    window.Show(Report());
    ParameterReport smaller = Report();
    smaller.inputs.resize(1);

    window.Show(smaller);

    QVERIFY(window.findChild<QLabel*>("lblIPName0")->isVisible());
    QVERIFY(!window.findChild<QLabel*>("lblIPName1")->isVisible());
    QVERIFY(!window.findChild<QLabel*>("lblIPVal2")->isVisible());
}

void ViewsReportTest::IntervalsTakeRoomOnlyWhileTheyExist()
{
    frmParams window;
    window.Show(Report());
    QCoreApplication::processEvents();
    const int without = window.sizeHint().height();
    ParameterReport bootstrapped = Report();
    bootstrapped.intervals = {{"K", "4100 - 6900"}};
    bootstrapped.intervalLevels = "0.025 - 0.975";

    window.Show(bootstrapped);

    QVERIFY(window.findChild<QGroupBox*>("picCI")->isVisible());
    QCOMPARE(window.findChild<QLabel*>("lblCIRange")->text(), "0.025 - 0.975");
    QCOMPARE(window.findChild<QLabel*>("lblCIVal0")->text(), "4100 - 6900");
    QVERIFY(window.sizeHint().height() > without);

    window.Show(Report()); // a new fit without bootstraps
    QVERIFY(!window.findChild<QGroupBox*>("picCI")->isVisible());
    QCOMPARE(window.sizeHint().height(), without);
}

void ViewsReportTest::RemarksTakeRoomOnlyWhileTheyExistAndWrap()
{
    frmParams window;
    window.Show(Report());
    QVERIFY(!window.findChild<QGroupBox*>("picRemarks")->isVisible());
    const int without = window.sizeHint().height();
    const std::string sentence = "1. A sentence that is much too long for one line of the window, because it "
                                 "tells what a fit means, why, and "
                                 "what to do about it.";
    ParameterReport remarked = Report();
    remarked.remarks = {sentence, "2. Short."};

    window.Show(remarked);

    QVERIFY(window.findChild<QGroupBox*>("picRemarks")->isVisible());
    QCOMPARE(window.findChild<QLabel*>("lblRemarks")->text(), "Remarks");
    auto* first = window.findChild<QLabel*>("lblRemark0");
    auto* second = window.findChild<QLabel*>("lblRemark1");
    QCOMPARE(first->text(), QString::fromStdString(sentence));
    QVERIFY(first->height() > second->height()); // two lines and one
    QCoreApplication::processEvents();
    QCOMPARE(first->visibleRegion().boundingRect(),
             first->rect()); // a scroll bar used to cover the last words
    QCOMPARE(second->visibleRegion().boundingRect(), second->rect());
    QVERIFY(first->textInteractionFlags().testFlag(Qt::TextSelectableByMouse));
    QVERIFY(window.sizeHint().height() > without);
    QCOMPARE(window.findChild<QLabel*>("lblMPVal0")->text(), "5230.5");

    window.Show(Report()); // a fit that deserves none
    QVERIFY(!window.findChild<QGroupBox*>("picRemarks")->isVisible());
    QCOMPARE(window.sizeHint().height(), without);
}

void ViewsReportTest::ManyRemarksScrollAndTheFewOfTheNextFitDoNot()
{
    frmParams window;
    ParameterReport report = Report();
    for (int i = 0; i < 40; ++i)
        report.remarks.push_back("A remark.");
    window.Show(report);
    auto* area = window.findChild<QScrollArea*>();
    QVERIFY(area->height() < area->widget()->height());
    QVERIFY(window.sizeHint().height() < 700); // with its buttons on a screen of 768 lines

    report.remarks.resize(2);
    window.Show(report);
    QVERIFY(area->height() >= area->widget()->height());
    QVERIFY(window.findChild<QLabel*>("lblRemark2") == nullptr);
}

void ViewsReportTest::TheButtonsOfTheReportAskForIntervalsAndHideTheWindow()
{
    frmParams window;
    window.Show(Report());
    QSignalSpy asked(&window, &frmParams::confIntsRequested);
    auto* cis = window.findChild<QPushButton*>("cmdCIs");
    auto* close = window.findChild<QPushButton*>("cmdClose");
    QCOMPARE(cis->text(), "&Conf. Ints");
    QCOMPARE(close->text(), "&OK");

    cis->click();
    QCOMPARE(asked.count(), 1);
    QVERIFY(window.isVisible());
    close->click();

    QVERIFY(!window.isVisible());
}

void ViewsReportTest::ALabelOfTheReportIsSelectableAndCopied()
{
    frmParams window;
    window.Show(Report());
    QVERIFY(QTest::qWaitForWindowActive(&window));
    for (const QLabel* label : window.findChildren<QLabel*>())
        QVERIFY2(label->textInteractionFlags().testFlag(Qt::TextSelectableByMouse),
                 qPrintable(label->objectName()));
    auto* value = window.findChild<QLabel*>("lblMPVal0");

    value->setFocus();
    value->setSelection(0, 4);
    QTest::keyClick(value, Qt::Key_C, Qt::ControlModifier);

    QCOMPARE(QGuiApplication::clipboard()->text(), "5230");
    window.CopyReport();
    QVERIFY(QGuiApplication::clipboard()->text().contains("5230.5"));
}

QTEST_MAIN(ViewsReportTest)
#include "views_report_test.moc"
