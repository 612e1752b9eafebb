// SPDX-License-Identifier: GPL-3.0-or-later
// The units of the columns: typed, kept for their project, shown on the axes.
#include "desktop/Session.h"
#include "shell/ColumnUnits.h"
#include "shell/DesktopSettings.h"
#include "views/frmOverview.h"

#include <QDialog>
#include <QLineEdit>
#include <QPushButton>
#include <QTimer>
#include <qcustomplot.h>

#include <filesystem>

namespace
{
/// The sample of 25 periods (total catch, effort and catch in numbers), saved as a project of its own.
struct Saved : Session {
    explicit Saved(const char* name = "stock.vl3")
    {
        if (name != nullptr)
            user.filesToSave = {Path(name)};
        Open();
    }
    std::string Path(const char* name) const
    {
        return folder.filePath(QString::fromLatin1(name)).toStdString();
    }
    /// Types these units, box by box ("4": the column of that number), and ends with `button`.
    void Units(const std::map<int, QString>& units, const char* button = "cmdOK")
    {
        bool shown = false;
        QTimer::singleShot(0, [&] {
            auto* form = qobject_cast<QDialog*>(QApplication::activeModalWidget());
            if (form == nullptr)
                return;
            shown = form->objectName() == "frmColumnUnits";
            for (const auto& [column, unit] : units)
                form->findChild<QLineEdit*>(QStringLiteral("txtUnit%1").arg(column))->setText(unit);
            form->findChild<QPushButton*>(QString::fromLatin1(button))->click();
        });
        Entry("mnuColumnUnits")->trigger();
        QVERIFY(shown);
    }
    /// The title of the axis of the graph that has this title.
    QString Axis(const char* title, bool bottom)
    {
        const auto titles = window.Graphs().UserTitles();
        const auto at = std::ranges::find(titles, title);
        if (at == titles.end())
            return "no such graph";
        const QCustomPlot& plot =
            window.Graphs().WindowAt(static_cast<std::size_t>(at - titles.begin()))->Plot();
        return (bottom ? plot.xAxis : plot.yAxis)->label().section("  [", 0, 0);
    }
    QTemporaryDir folder;
};

/// Under how many names the desktop keeps units.
qsizetype Kept()
{
    QSettings settings = DesktopSettings();
    settings.beginGroup("units");
    return settings.allKeys().size();
}

constexpr const char* kCpue = "Expected and Observed CPUE";
constexpr const char* kCatch = "Expected and Observed Catch";
} // namespace

class UnitsTest : public QObject
{
    Q_OBJECT

private slots:
    void TheUnitsOfTheColumnsStandOnTheAxesOfTheGraphs()
    {
        Saved session;
        session.Units({{AxisMeasure::kTime, "years"},
                       {columns::CatchNums, "1000 fish"},
                       {columns::Effort, "boat days"},
                       {columns::TotCatchNums, "1000 fish"}});
        session.Fit();
        QCOMPARE(session.Axis(kCpue, true), QString("Time (years)"));
        QCOMPARE(session.Axis(kCpue, false), QString("CPUE (1000 fish / boat days)"));
        QCOMPARE(session.Axis(kCatch, false), QString("Catch (1000 fish)"));
        QCOMPARE(session.Axis("Residual Catches vs Expected Catches", true),
                 QString("Expected Catch (1000 fish)"));
        QCOMPARE(session.Axis("Population Numbers", false), QString("Population Numbers (1000 fish)"));
    }

    void OpenGraphsTakeAUnitThatIsTypedLater()
    {
        Saved session;
        session.Fit();
        QCOMPARE(session.Axis(kCatch, false), QString("Catch"));
        session.Units({{columns::CatchNums, "fish"}});
        QCOMPARE(session.Axis(kCatch, false), QString("Catch (fish)"));
        session.Units({{columns::CatchNums, " "}});
        QCOMPARE(session.Axis(kCatch, false), QString("Catch"));
    }

    void CancelLeavesTheUnitsAsTheyWere()
    {
        Saved session;
        session.Units({{columns::CatchNums, "fish"}});
        session.Units({{columns::CatchNums, "crabs"}}, "cmdCancel");
        session.Fit();
        QCOMPARE(session.Axis(kCatch, false), QString("Catch (fish)"));
    }

    void HalfTheUnitOfARatioIsNoUnit()
    {
        ColumnUnits units;
        const AxisMeasure cpue{.column = columns::CatchWt, .per = columns::Effort};
        units.Typed(columns::CatchWt, "t");
        QCOMPARE(units.Of(cpue), std::string());
        units.Typed(columns::Effort, "pot lifts");
        QCOMPARE(units.Of(cpue), std::string("t / pot lifts"));
        units.Typed(columns::CatchWt, "");
        QCOMPARE(units.Of(cpue), std::string());
    }

    void AColumnOfAFitHasTheUnitOfWhatItEstimates()
    {
        ColumnUnits units;
        units.Typed(columns::TotCatchWt, "t");
        units.Typed(columns::TotCatchNums, "fish");
        units.Typed(columns::CatchNums, "1000 fish");
        QCOMPARE(units.Of({.column = columns::ExpCatchNums}), std::string("1000 fish"));
        QCOMPARE(units.Of({.column = columns::PopWt}), std::string("t"));
        QCOMPARE(units.Of({.column = columns::PopNums}), std::string("fish"));
        QCOMPARE(units.Of({.column = columns::ExpCatchWt}), std::string());
        QCOMPARE(units.Of({.column = AxisMeasure::kNone}), std::string());
        QCOMPARE(units.Of({.column = columns::ObsCPUE}), std::string());
    }

    void TheLastOfTheUsersColumnsHasAUnitToo()
    {
        ColumnUnits units;
        units.Typed(columns::RecruitIndex, "larvae / haul");
        QCOMPARE(units.Of({.column = columns::RecruitIndex}), std::string("larvae / haul"));
    }

    void AProjectWithoutUnitsTakesThoseOfTheFormerOneAway()
    {
        ColumnUnits units;
        units.Typed(columns::CatchWt, "t");
        units.Load("/no/such/project.vl3");
        QCOMPARE(units.Typed(columns::CatchWt), std::string());
    }

    void UnitsThatAreTakenBackLeaveNothingInTheSettings()
    {
        Saved session("alone.vl3");
        const qsizetype before = Kept();
        session.Units({{columns::CatchNums, "fish"}});
        QCOMPARE(Kept(), before + 1);
        session.Units({{columns::CatchNums, ""}});
        QCOMPARE(Kept(), before);
    }

    void ATableThatIsNoProjectYetKeepsItsUnitsUntilTheFirstSave()
    {
        Saved session(nullptr); // Save As is cancelled
        const qsizetype before = Kept();
        session.Units({{columns::CatchNums, "fish"}});
        QCOMPARE(Kept(), before);
        session.user.filesToSave = {session.Path("later.vl3")};
        session.Entry("mnuSaveAs")->trigger();
        QCOMPARE(Kept(), before + 1);
    }

    void TheResidualsOfLogarithmsKeepTheirs()
    {
        ColumnUnits units;
        units.Typed(columns::CatchWt, "t");
        GraphTitles graph;
        graph.XMeasure({.column = columns::CatchWt});
        graph.YUnit("ln");
        units.Apply(graph);
        QCOMPARE(graph.XUnit(), std::string("t"));
        QCOMPARE(graph.YUnit(), std::string("ln"));
        GraphTitles turned;
        turned.XUnit("ln");
        turned.YMeasure({.column = columns::CatchWt});
        units.Apply(turned);
        QCOMPARE(turned.XUnit(), std::string("ln"));
        QCOMPARE(turned.YUnit(), std::string("t"));
    }

    void UnitsComeBackWithTheirProjectAndNeverInAnother()
    {
        Saved session;
        session.Units({{columns::CatchNums, "fish"}});
        session.user.filesToSave = {session.Path("other.vl3")};
        session.Open(); // the same table as another project
        session.Fit();
        QCOMPARE(session.Axis(kCatch, false), QString("Catch"));
        session.window.OpenPath(QString::fromStdString(session.Path("stock.vl3")));
        session.Fit();
        QCOMPARE(session.Axis(kCatch, false), QString("Catch (fish)"));
    }

    void ACopyOfTheProjectTakesItsUnitsAlong()
    {
        Saved session;
        session.Units({{columns::CatchNums, "fish"}});
        session.user.filesToSave = {session.Path("copy.vl3")};
        session.Entry("mnuSaveAs")->trigger();
        session.Entry("mnuClose")->trigger();
        session.window.OpenPath(QString::fromStdString(session.Path("copy.vl3")));
        session.Fit();
        QCOMPARE(session.Axis(kCatch, false), QString("Catch (fish)"));
    }

    void AProjectThatIsReplacedLeavesNoUnitsBehind()
    {
        Saved session;
        session.Units({{columns::CatchNums, "fish"}});
        session.user.filesToSave = {session.Path("stock.vl3")}; // the same name once more
        session.Open();
        session.Fit();
        QCOMPARE(session.Axis(kCatch, false), QString("Catch"));
    }

    void UnitsChangeNeitherDataNorFile()
    {
        Saved session;
        const auto bytes = [&] {
            QFile file(QString::fromStdString(session.Path("stock.vl3")));
            return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
        };
        const QByteArray before = bytes();
        QVERIFY(!before.isEmpty());
        session.Units({{columns::CatchNums, "fish"}});
        QVERIFY(!session.window.objData().IsDirty());
        QCOMPARE(bytes(), before);
    }

    void TheFormListsTheColumnsThatTheDataSetHas()
    {
        Saved session;
        QStringList boxes;
        QTimer::singleShot(0, [&] {
            auto* form = qobject_cast<QDialog*>(QApplication::activeModalWidget());
            for (const QLineEdit* box : form->findChildren<QLineEdit*>())
                boxes += box->objectName();
            form->reject();
        });
        session.Entry("mnuColumnUnits")->trigger();
        QCOMPARE(boxes, (QStringList{"txtUnit0", "txtUnit2", "txtUnit4", "txtUnit6"}));
    }

    void WithoutADataSetThereIsNothingToName()
    {
        Session session;
        QVERIFY(!session.Entry("mnuColumnUnits")->isEnabled());
    }
};

QTEST_MAIN(UnitsTest)
#include "units_test.moc"
