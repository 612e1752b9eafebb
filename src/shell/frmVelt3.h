// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/Run.h"
#include "dialogs/DesktopUser.h"
#include "engines/RandomSource.h"
#include "shell/EditCommands.h"
#include "shell/FileCommands.h"
#include "shell/FitCommands.h"
#include "shell/GraphCommands.h"
#include "shell/GraphWindows.h"
#include "shell/HelpCommands.h"
#include "shell/LogCommands.h"
#include "shell/MenuState.h"
#include "shell/OpenProject.h"
#include "shell/ProjectionCommands.h"
#include "shell/RecentFiles.h"
#include "shell/ToggleCommands.h"
#include "shell/UnitCommands.h"
#include "views/DesktopPrinter.h"
#include "views/ProgressMeterWindow.h"
#include "views/frmFitManager.h"
#include "views/frmParams.h"

#include <QCoreApplication>
#include <QMainWindow>
#include <functional>
#include <map>
#include <memory>

class DataGridView;
class MainMenu;
class QLabel;
class QStackedWidget;

/// The main window, owner of the run: the open project, the graph windows and the report. It routes each
/// command to what serves it, shows what came of it, and is the one place where a failed command ends.
class frmVelt3 final : public QMainWindow, public IMainWindow, public IProjectView
{
    Q_OBJECT

public:
    /// `user`: who answers the questions, for tests; null for the person at the screen. It must outlive the
    /// window.
    explicit frmVelt3(IUser* user = nullptr);
    ~frmVelt3() override;
    Q_DISABLE_COPY_MOVE(frmVelt3)

    bool FileOpen() const { return m_project.FileOpen(); }
    const clsVeltData& objData() const { return m_project.Data(); }
    clsMethManager& objMeth() { return m_project.Fits(); }
    const GraphWindows& Graphs() const { return m_graphs; }
    EditCommands& Edit() { return *m_edit; }
    ToggleCommands& Toggles() { return *m_toggles; }
    DesktopPrinter& Printer() { return m_printer; }
    HelpCommands& Help() { return m_help; }
    const TableSheet& Sheet() const { return m_edit->Sheet(); }

    /// Gives one menu command by its name ("mnuNewModel"), as a click on its entry does. A command given
    /// while another still runs is ignored.
    void Command(const QString& name);

    /// Closes what is open (which may ask) and opens the file at `path`.
    void OpenPath(const QString& path);

    /// Offers the working copies that a crash left behind.
    void OfferLeftovers()
    {
        Guarded("Form_Load", [this] { m_files.OfferLeftovers(); });
    }

    // IMainWindow
    void StatusText(const std::string& text) override;
    void HourglassOn() override;
    void HourglassOff() override;
    void UpDatePBar(double) override {}
    void AddModelGraph(std::shared_ptr<ModelGraph> graph) override;
    void AddProjGraph(std::shared_ptr<ProjGraph> graph) override;
    void ClearGraphs(bool histogramsOnly) override;
    void SetUpDataGrid() override;
    void EnableControls() override;
    void ShowParameterReport(const ParameterReport* report) override;
    std::unique_ptr<VELT_ContourPlot> NewContourPlot() override;
    void YieldToEvents() override { QCoreApplication::processEvents(); }

    // IProjectView
    void LetGoOfProject() override;
    void ShowNoProject() override;
    void KeepResultsInSight() override;
    void ShowCaption() override;
    void NoteOpened(const std::string& path) override;
    void NoteSaved(const std::string& path) override;
    void EnterEditMode() override { m_edit->EnterEditMode(); }
    bool MayLeaveTable() override { return m_edit->MayLeaveCell(); }

protected:
    void closeEvent(QCloseEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    void BuildWindow();
    void Guarded(const QString& name, const std::function<void()>& work);
    void Attempt(const QString& name, const std::function<void()>& work);
    void AfterFailure();
    void SettleGraphs();
    void ListenToTable();
    void OnEditMenu();
    MenuState Menu(bool clipboardHasText = true) const;
    void ShowFitManager();
    void RestoreFitManager();
    void ShowDataSet();
    void ShowHint(bool noData);
    void ShowNewGraph();
    void NoteFile(const std::string& path);

    DesktopUser m_desktopUser{this};
    DesktopPrinter m_printer{*this};
    ProgressMeterWindow m_meter{this};
    RandomSource m_random;
    Run m_run;
    HelpCommands m_help{m_run.user};
    frmParams m_report{this};
    GraphWindows m_graphs{*this, m_report};
    OpenProject m_project{m_run, *this};
    FileCommands m_files{m_project};
    FitCommands m_fits{m_project};
    GraphCommands m_graphCommands{m_project, m_graphs};
    LogCommands m_log{m_project, m_files};
    ProjectionCommands m_projections{m_project, *this};
    UnitCommands m_units{m_project, m_graphs, *this};
    RecentFiles m_recent;
    frmFitManager m_fitManager{this};
    std::unique_ptr<EditCommands> m_edit;
    std::unique_ptr<ToggleCommands> m_toggles;
    const std::map<QString, std::function<void()>> m_commands; ///< by the name of their menu entry

    MainMenu* m_menu = nullptr;
    DataGridView* m_grid = nullptr;
    QLabel* m_hint = nullptr;
    QStackedWidget* m_pages = nullptr;
    QLabel* m_status = nullptr;
    QLabel* m_number = nullptr;
    bool m_hourglass = false;
    bool m_busy = false;
    bool m_reportPlaced = false;
};
