// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/Run.h"
#include "data/clsVeltData.h"
#include "dialogs/DesktopUser.h"
#include "engines/RandomSource.h"
#include "fit/clsMethManager.h"
#include "shell/GraphWindows.h"
#include "views/ProgressMeterWindow.h"
#include "views/frmParams.h"

#include <QMainWindow>
#include <functional>
#include <memory>

class DataGridView;
class MainMenu;
class QLabel;
class QStackedWidget;

/// The main window, owner of the run: one data set, one fit manager and the graph windows. It decides which
/// commands are available and routes each to what serves it; it works nothing out itself.
class frmVelt3 : public QMainWindow, public IMainWindow
{
    Q_OBJECT

public:
    /// `user`: who answers the questions, for tests; null for the person at the screen. It must outlive the
    /// window.
    explicit frmVelt3(IUser* user = nullptr);
    ~frmVelt3() override;

    bool FileOpen() const { return m_fileOpen; }
    const clsVeltData& objData() const { return *m_data; }
    clsMethManager& objMeth() { return *m_meth; }
    const GraphWindows& Graphs() const { return m_graphs; }

    /// Gives one menu command by its name ("mnuNewModel"), as a click on its entry does. A command given
    /// while another still runs is ignored.
    void Command(const QString& name);

    /// Closes what is open (which may ask) and opens the file at `path`.
    void OpenPath(const QString& path);

    // IMainWindow
    void StatusText(const std::string& text) override;
    void HourglassOn() override;
    void HourglassOff() override;
    void UpDatePBar(double) override {}
    void AddModelGraph(std::shared_ptr<ModelGraph> graph) override;
    void ClearGraphs(bool histogramsOnly) override;
    void SetUpDataGrid() override;
    void EnableControls() override;
    void ShowParameterReport(const ParameterReport* report) override;
    std::unique_ptr<VELT_ContourPlot> NewContourPlot() override;
    void YieldToEvents() override;

protected:
    void closeEvent(QCloseEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    void BuildWindow();
    void InitObjects();
    void Guarded(const QString& name, const std::function<void()>& work);
    void AfterFailure();

    void OnOpen();
    void OnClose();
    void OnDataPlots();
    void OnNewModel();
    void OnNewParams();
    void OnGenerateConfInts();
    void OnDisplayConfInts();
    void OnReportConfInts();
    void OnAbout();
    void TakeFocus();

    /// Loads `path` in place of nothing: the former data set has been closed.
    void Load(const std::string& path);
    /// Answers whether the current fit may go; true when there is none.
    bool MayClearFit();
    void CloseDataSet();
    void ShowCaption();
    void ShowHint(bool noData);

    DesktopUser m_desktopUser{this};
    ProgressMeterWindow m_meter{this};
    RandomSource m_random;
    Run m_run;
    std::unique_ptr<clsVeltData> m_data;
    std::unique_ptr<clsMethManager> m_meth;
    frmParams m_report{this};
    GraphWindows m_graphs{*this};

    MainMenu* m_menu = nullptr;
    DataGridView* m_grid = nullptr;
    QLabel* m_hint = nullptr;
    QStackedWidget* m_pages = nullptr;
    QLabel* m_status = nullptr;
    QLabel* m_number = nullptr;
    bool m_fileOpen = false;
    bool m_fitEverMade = false;
    bool m_hourglass = false;
    bool m_busy = false;
    bool m_reportPlaced = false;
};
