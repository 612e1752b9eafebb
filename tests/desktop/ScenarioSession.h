// SPDX-License-Identifier: GPL-3.0-or-later
// A fit whose scenarios are edited and projected.
#pragma once

#include "Session.h"
#include "views/frmProjGraph.h"
#include "views/frmProjections.h"

#include <QClipboard>
#include <QComboBox>

constexpr int kFirst = ScenarioSheet::kFirstDataRow;

/// A fit of the sample of 25 periods, with the editor of scenarios open.
struct Fitted : Session {
    Fitted()
    {
        Open();
        Fit();
        user.messages.clear();
    }
    frmProjections& Editor() { return *window.findChild<frmProjections*>(); }
    void SetUp()
    {
        Entry("mnuViewProj")->trigger();
        QApplication::setActiveWindow(&Editor());
        (void)QTest::qWaitForWindowActive(&Editor());
        Cells().setFocus();
    }
    GridWidget& Cells() { return *dynamic_cast<GridWidget*>(Editor().findChild<QTableView*>("grdProj")); }
    QTableView& Heads() { return *Editor().findChild<QTableView*>("grdHeads"); }
    QComboBox& Units() { return *Editor().findChild<QComboBox*>("cmbUnits"); }
    QAction* Command(const char* name) { return Editor().findChild<QAction*>(QString::fromLatin1(name)); }
    QString Cell(int row, int col) { return Cells().model()->index(row, col).data().toString(); }
    QString Year(int row) { return Cells().model()->headerData(row, Qt::Vertical).toString(); }
    void GoTo(int row, int col) { Cells().Select(GridSelection::At(row, col)); }
    void Paste(const char* text)
    {
        QGuiApplication::clipboard()->setText(QString::fromLatin1(text));
        Command("mnuPaste")->trigger();
    }
    const clsVeltData& Data() { return window.objData(); }
    std::int32_t Kept(const char* title, int period)
    {
        return Data().ProjScenario(title)->Vector(Data().NAPoints() + period);
    }
    void Project(const std::vector<std::string>& titles)
    {
        user.Selects(titles);
        Entry("mnuProject")->trigger();
    }
    frmProjGraph* Graph(std::size_t fromTheEnd = 0)
    {
        const std::size_t count = window.Graphs().UserTitles().size();
        return qobject_cast<frmProjGraph*>(window.Graphs().WindowAt(count - 1 - fromTheEnd));
    }
};

/// The main function of a program of such tests.
template <typename Test>
int RunInFusion(int argc, char* argv[])
{
    QApplication application(argc, argv);
    QApplication::setStyle("Fusion");
    Test test;
    return QTest::qExec(&test, argc, argv);
}
