// SPDX-License-Identifier: GPL-3.0-or-later
// Graphs to be edited, and the hands on the dialog that edits them.
#pragma once

#include "Session.h"
#include "graphs/ProjGraph.h"
#include "views/frmGraphEdit.h"
#include "views/frmProjGraph.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <QTimer>

#include <functional>
#include <memory>
#include <vector>

/// Does `what` with the dialog that `open` will show, which then must be closed.
template <typename Dialog>
void With(const std::function<void()>& open, const std::function<void(Dialog&)>& what)
{
    bool done = false;
    QTimer::singleShot(0, [&] {
        auto* dialog = qobject_cast<Dialog*>(QApplication::activeModalWidget());
        if (dialog == nullptr)
            return;
        what(*dialog);
        done = true;
        if (dialog->isVisible()) // a dialog that stays would hang the test
            dialog->reject();
    });
    open();
    QVERIFY(done);
}

inline void Edit(PlotWindow& window, const std::function<void(frmGraphEdit&)>& what)
{
    With<frmGraphEdit>([&] { window.findChild<QAction*>("EditGraph")->trigger(); }, what);
}

inline void Enter(QDialog& form, const char* box, const QString& text)
{
    form.findChild<QLineEdit*>(QString::fromLatin1(box))->setText(text);
}

inline void Tick(QDialog& form, const char* box, bool on)
{
    form.findChild<QCheckBox*>(QString::fromLatin1(box))->setChecked(on);
}

inline void Choose(QDialog& form, const char* box, const QString& entry)
{
    auto* combo = form.findChild<QComboBox*>(QString::fromLatin1(box));
    const int index = combo->findText(entry);
    QVERIFY2(index >= 0, qPrintable(entry));
    combo->setCurrentIndex(index);
}

inline void Click(QDialog& form, const char* button)
{
    form.findChild<QPushButton*>(QString::fromLatin1(button))->click();
}

/// Four years: two in the fit, one out of it, one that is not drawn.
inline std::shared_ptr<ModelGraph> Cpue()
{
    auto graph = std::make_shared<ModelGraph>();
    constexpr double hidden = ModelGraph::InvalidData;
    graph->Create(4);
    graph->Type(GraphType::PointsAndLine);
    graph->Title("Expected and Observed CPUE");
    graph->XTitle("Time");
    graph->YTitle("CPUE");
    graph->WithToggs(true);
    graph->XData(std::vector<double>{2001, 2002, 2003, 2004});
    graph->YData(std::vector<double>{20, hidden, 10, hidden});
    graph->YData2(std::vector<double>{hidden, 15, hidden, hidden});
    graph->OverlayLine(std::vector<double>{21, 16, 11, 8});
    return graph;
}

/// One scenario of two periods behind two of a fit, with limits.
inline std::shared_ptr<ProjGraph> Projection()
{
    auto graph = std::make_shared<ProjGraph>();
    graph->Create(1, 4, true, 2, true);
    graph->Title("Projection #1");
    graph->LegendText(1, "Half the effort");
    graph->LegendText(2, "Fit");
    for (int i = 1; i <= 4; ++i) {
        graph->XData(i, 2000.0F + static_cast<float>(i));
        for (int line = 1; line <= 2; ++line)
            graph->ProjData(line, i, 100.0F);
        graph->ErrorMinus(i, 80.0F);
        graph->ErrorPlus(i, 130.0F);
    }
    return graph;
}
