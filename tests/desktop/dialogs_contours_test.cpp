// SPDX-License-Identifier: GPL-3.0-or-later
// The dialog of the range of a likelihood surface.
#include "DialogDesk.h"
#include "dialogs/frmContourRange.h"
#include "support/ScriptedUser.h"

#include <QGroupBox>
#include <QLabel>
#include <QPushButton>

class dialogs_contours_test : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_user = ScriptedUser(); }

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

    void AnOfferedKBelowOneIsAskedNothingAndAChangedOneIs()
    {
        frmContourRange form(m_user, ContourRange{"K", "r", 0.25, 2, 0.1, 1, 20}, nullptr);
        const Desk desk(form);
        desk.The("txtP1Lo")->setFocus();
        desk.Leave("txtP1Lo");
        QVERIFY(m_user.messages.empty());
        desk.Type("txtP1Lo", "0.5");
        desk.Leave("txtP1Lo");
        QVERIFY(m_user.Saw("Value must be in the range 1 - 3.4E+38"));
        m_user.messages.clear();
        desk.Type("txtP1Lo", "1.5");
        desk.Leave("txtP1Lo");
        desk.Type("txtP1Lo", "0.25"); // back to what was offered
        desk.Click("cmdOK");
        QVERIFY(m_user.messages.empty());
        QVERIFY(!form.isVisible());
        QCOMPARE(form.Record().Param1Lo, 0.25);
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

    void TheBoundsStandInTwoColumnsAndTwoRows()
    {
        frmContourRange form(m_user, ContourRange{"K", "r", 1, 2, 0.1, 1, 20}, nullptr);
        const Desk desk(form);
        const auto at = [&](const char* box) { return desk.The(box)->pos(); };
        QCOMPARE(at("txtP1Lo").x(), at("txtP2Lo").x());
        QCOMPARE(at("txtP1HI").x(), at("txtP2Hi").x());
        QVERIFY(at("txtP1Lo").x() < at("txtP1HI").x());
        QCOMPARE(at("txtP1Lo").y(), at("txtP1HI").y());
        QCOMPARE(at("txtP2Lo").y(), at("txtP2Hi").y());
        QVERIFY(at("txtP1Lo").y() < at("txtP2Lo").y());
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

private:
    ScriptedUser m_user;
};

QTEST_MAIN(dialogs_contours_test)
#include "dialogs_contours_test.moc"
