// SPDX-License-Identifier: GPL-3.0-or-later
// The main window of the program and a person who answers its questions from a script.
#pragma once

#include "data/NewDataSet.h"
#include "files/AsciiWizard.h"
#include "graphs/ModelGraph.h"
#include "shell/frmVelt3.h"
#include "support/FillWizard.h"
#include "support/ScriptedUser.h"
#include "views/DataGridView.h"
#include "views/GridWidget.h"
#include "views/frmModelGraph.h"

#include <QAction>
#include <QApplication>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QSettings>
#include <QTableView>
#include <QTemporaryDir>
#include <QtTest>

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

inline std::shared_ptr<ModelGraph> Graph(const char* title, GraphType type = GraphType::Line)
{
    auto graph = std::make_shared<ModelGraph>();
    graph->Create(2);
    graph->Title(title);
    graph->Type(type);
    const std::vector<double> x{1970, 1971};
    graph->XData(x);
    graph->YData(x);
    return graph;
}

/// The main window and a person who answers from a script.
struct Session {
    Session()
    {
        // The list of recent files is none of the user's who runs the tests.
        static const QTemporaryDir settings;
        QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, settings.path());
        user.onAsciiWizard = FillWizard;
        user.onInputParams = [](InputParams&) { return true; };
        window.show();
    }
    /// A new data set of these columns, from the period 2001 on.
    void New(int rows, std::vector<int> columns)
    {
        user.onNewDataSet = [=](NewDataSet& wanted) {
            wanted = {
                .FileDescription = "Ling", .MinTimeP = 2001, .MaxTimeP = 2000 + rows, .columns = columns};
            return true;
        };
        Entry("mnuNew")->trigger();
    }
    QAction* Entry(const char* name) // other windows have menus too
    {
        return window.menuBar()->findChild<QAction*>(QString::fromLatin1(name));
    }
    QMenu* Menu(const char* name) { return window.menuBar()->findChild<QMenu*>(QString::fromLatin1(name)); }
    /// The captions of the Graph menu before its line: one a window.
    QStringList ListedGraphs()
    {
        QStringList captions;
        for (const QAction* action : Menu("mnuGraph")->actions()) {
            if (action->isSeparator())
                break;
            captions += action->text();
        }
        return captions;
    }
    void Open() { window.OpenPath(QString(VELT_TEST_SAMPLES) + "/expected/const25.txt"); }
    void Fit()
    {
        user.Picks("CONSTANT");
        Entry("mnuNewModel")->trigger();
    }
    QWidget* Report() { return window.findChild<frmParams*>(); }
    std::size_t Histograms()
    {
        const auto titles = window.Graphs().UserTitles();
        return static_cast<std::size_t>(std::ranges::count_if(
            titles, [](const std::string& t) { return t.find("n = ") != std::string::npos; }));
    }
    // The hands at the table. Rows count from 1, grid columns from 2.
    GridWidget& Grid() { return window.findChild<DataGridView*>()->Grid(); }
    void Activate()
    {
        QApplication::setActiveWindow(&window);
        (void)QTest::qWaitForWindowActive(&window);
        Grid().setFocus();
    }
    void Go(int row, int col) { Grid().Select(GridSelection::At(row, col)); }
    void Mark(int row, int col, int rowSel, int colSel) { Grid().Select({row, col, rowSel, colSel}); }
    /// To whatever has the focus, key by key, as a keyboard does.
    void Type(const QString& text)
    {
        for (const QChar key : text)
            QTest::keyClick(QApplication::focusWidget(), key.toLatin1());
    }
    void Press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        QTest::keyClick(QApplication::focusWidget(), key, modifiers);
    }
    void Click(int row, int col)
    {
        const QModelIndex cell = Grid().model()->index(row - 1, col);
        QTest::mouseClick(Grid().viewport(), Qt::LeftButton, Qt::NoModifier,
                          Grid().visualRect(cell).center());
    }
    void ClickBox(int row)
    {
        auto* fixed = window.findChild<QTableView*>("grdFixed");
        const QModelIndex cell = fixed->model()->index(row - 1, TableSheet::kIncludeColumn);
        QTest::mouseClick(fixed->viewport(), Qt::LeftButton, Qt::NoModifier,
                          fixed->visualRect(cell).center());
    }
    float Value(int row, int col) const { return window.Sheet().Data(col, row); }
    QString Shown(int row, int col) { return Grid().model()->index(row - 1, col).data().toString(); }

    QString Panel(const char* name) { return window.findChild<QLabel*>(QString::fromLatin1(name))->text(); }

    ScriptedUser user;
    frmVelt3 window{&user};
};
