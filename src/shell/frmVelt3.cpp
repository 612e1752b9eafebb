// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/frmVelt3.h"

#include "base/HelpTopics.h"
#include "fit/ParameterReport.h"
#include "graphs/ModelGraph.h"
#include "graphs/ProjGraph.h"
#include "graphs/VELT_ContourPlot.h"
#include "shell/MainMenu.h"
#include "shell/MainWords.h"
#include "views/DataGridView.h"
#include "views/GridWidget.h"

#include <QApplication>
#include <QCloseEvent>
#include <QDragEnterEvent>
#include <QLabel>
#include <QScreen>
#include <QStackedWidget>
#include <QStatusBar>
#include <QStyle>

#include <algorithm>
#include <new>

namespace
{
/// Remembers that a command runs, so that the turns it gives to the event queue start no second one.
class Busy
{
public:
    explicit Busy(bool& flag) : m_flag(flag) { m_flag = true; }
    ~Busy() { m_flag = false; }
    Busy(const Busy&) = delete;
    Busy& operator=(const Busy&) = delete;

private:
    bool& m_flag;
};

/// Commands that speak to the open cell itself.
bool KeepsTheCell(const QString& name)
{
    return name == "mnuCut" || name == "mnuCopy" || name == "mnuPaste";
}

} // namespace

frmVelt3::frmVelt3(IUser* user)
    : m_run(user ? *user : m_desktopUser, *this, m_meter, m_random),
      m_commands{{"mnuNew", [this] { m_files.New(); }},
                 {"mnuOpen", [this] { m_files.Open(); }},
                 {"mnuSave", [this] { m_files.Save(); }},
                 {"mnuSaveAs", [this] { m_files.SaveAs(); }},
                 {"mnuPrint", [this] { m_project.Data().PrintData(m_printer); }},
                 {"mnuTextExport", [this] { m_files.TextExport(); }},
                 {"mnuClose", [this] { m_files.Close(); }},
                 {"mnuEditMode", [this] { m_edit->SwitchEditMode(); }},
                 {"mnuUndo", [this] { m_edit->Steps().undo(); }},
                 {"mnuRedo", [this] { m_edit->Steps().redo(); }},
                 {"mnuFileDescription", [this] { m_edit->FileDescription(); }},
                 {"mnuDeleteRow", [this] { m_edit->DeleteRow(); }},
                 {"mnuInsertRow", [this] { m_edit->InsertRow(); }},
                 {"mnuDeleteColumn", [this] { m_edit->DeleteColumn(); }},
                 {"mnuInsertColumn", [this] { m_edit->InsertColumn(); }},
                 {"mnuAddRow", [this] { m_edit->AddRow(); }},
                 {"mnuCut", [this] { m_edit->Cut(); }},
                 {"mnuCopy", [this] { m_edit->Copy(); }},
                 {"mnuPaste", [this] { m_edit->Paste(); }},
                 {"mnuFormat", [this] { m_edit->Format(); }},
                 {"mnuNumber", [this] { m_edit->Number(); }},
                 {"mnuDataPlots", [this] { m_fits.PlotData(); }},
                 {"mnuColumnUnits", [this] { m_units.Ask(); }},
                 {"mnuNewModel", [this] { m_fits.NewModel(); }},
                 {"mnuNewParams", [this] { m_fits.NewParams(); }},
                 {"mnuParameters", [this] { m_fits.ViewParameters(); }},
                 {"mnuGenerateConfInts", [this] { m_fits.GenerateConfInts(); }},
                 {"mnuDisplayConfInts", [this] { m_fits.DisplayConfInts(); }},
                 {"mnuFitManager", [this] { ShowFitManager(); }},
                 {"mnuViewProj", [this] { m_projections.SetUpScenarios(); }},
                 {"mnuProject", [this] { m_projections.Project(); }},
                 {"mnuProjWithCI", [this] { m_projections.ProjectWithCI(); }},
                 {"mnuTile", [this] { m_graphCommands.Tile(); }},
                 {"mnuCascade", [this] { m_graphCommands.Cascade(); }},
                 {"mnuCloseAll", [this] { m_graphCommands.CloseAll(); }},
                 {"mnuOverview", [this] { m_graphCommands.ShowOverview(); }},
                 {"mnuSettings", [this] { m_fits.Settings(); }},
                 {"mnuAbout", [this] { m_run.reporter.Show(main_words::About()); }}}
{
    setObjectName("frmVelt3");
    BuildWindow();
    m_desktopUser.HelpBy(m_help);
    m_project.InitObjects();
    connect(&m_report, &frmParams::confIntsRequested, this,
            [this] { Guarded("cmdCIs", [this] { m_fits.ReportConfInts(); }); });
    connect(&m_report, &frmParams::printRequested, this,
            [this] { Guarded("cmdPrint", [this] { m_project.Fits().PrintParameters(m_printer); }); });
    connect(&m_report, &frmParams::helpRequested, this,
            [this] { m_help.ShowTopic(help_topics::kParameters); });
    connect(&m_fitManager, &frmFitManager::HelpAsked, this,
            [this] { m_help.ShowTopic(help_topics::kFitManager); });
    connect(&m_fitManager, &frmFitManager::AddAsked, this,
            [this] { Guarded("cmdAdd", [this] { m_log.Add(); }); });
    connect(&m_fitManager, &frmFitManager::LoadAsked, this,
            [this](const QString& name) { Guarded("cmdLoad", [&] { m_log.Load(name.toStdString()); }); });
    connect(&m_fitManager, &frmFitManager::DeleteAsked, this,
            [this](int place) { Guarded("cmdDelete", [this, place] { m_log.Delete(place); }); });
    m_projections.Editor().RunBy([this](const char* name, const std::function<void()>& command) {
        Guarded(QString::fromLatin1(name), command);
    });
    connect(&m_projections.Editor(), &frmProjections::ScenariosChanged, this, &frmVelt3::EnableControls);
    connect(m_menu, &MainMenu::RecentChosen, this, &frmVelt3::OpenPath);
    m_menu->ListRecent(m_recent.Paths());
    StatusText(m_run.globals.Ready);
    EnableControls();
}

frmVelt3::~frmVelt3()
{
    HourglassOff();
    m_graphs.Listen({});
    m_edit->Steps().disconnect(this);
    m_toggles.reset();
    m_edit.reset(); // lets go of the table; a window that is destroyed while it shows lays it out once more
}

void frmVelt3::BuildWindow()
{
    m_menu = new MainMenu(*this);
    connect(m_menu, &MainMenu::Chosen, this, &frmVelt3::Command);
    connect(m_menu, &MainMenu::AboutToShow, this, &frmVelt3::EnableControls);
    connect(m_menu, &MainMenu::EditAboutToShow, this, &frmVelt3::OnEditMenu);
    connect(m_menu, &MainMenu::EditHidden, this, [this] { m_menu->Apply(Menu()); });
    connect(m_menu, &MainMenu::GraphChosen, this,
            [this](int position) { m_graphs.BringForward(static_cast<std::size_t>(position)); });

    m_hint = new QLabel;
    m_hint->setObjectName("lblHint");
    m_hint->setAlignment(Qt::AlignCenter);
    m_hint->setWordWrap(true);
    m_hint->setForegroundRole(QPalette::PlaceholderText);
    m_grid = new DataGridView;
    m_pages = new QStackedWidget;
    m_pages->addWidget(m_hint);
    m_pages->addWidget(m_grid);
    setCentralWidget(m_pages);

    m_status = new QLabel;
    m_status->setObjectName("Status");
    m_number = new QLabel;
    m_number->setObjectName("Number");
    m_number->setTextInteractionFlags(Qt::TextSelectableByMouse);
    statusBar()->addWidget(m_status, 1);
    statusBar()->addPermanentWidget(m_number);
    connect(m_grid, &DataGridView::CellValue, m_number, &QLabel::setText);
    ListenToTable();

    setAcceptDrops(true);
    const QFontMetrics metrics = fontMetrics();
    const QSize wanted(metrics.averageCharWidth() * 150, metrics.height() * 44);
    resize(wanted.boundedTo(screen()->availableSize() * 9 / 10));
    move(screen()->availableGeometry().topLeft()); // in a corner it leaves most room for graphs
    setMinimumSize(metrics.averageCharWidth() * 50, metrics.height() * 14);
}

/// What is done at the table, and at the points of graphs, runs as commands do.
void frmVelt3::ListenToTable()
{
    m_edit =
        std::make_unique<EditCommands>(EditCommands::Around{.project = m_project,
                                                            .graphs = m_graphs,
                                                            .grid = *m_grid,
                                                            .showDataSet = [this] { ShowDataSet(); },
                                                            .popUpMenu = [this] { m_menu->PopUpEdit(); }});
    m_toggles = std::make_unique<ToggleCommands>(m_project, m_graphs, *m_grid, m_edit->Sheet());
    const GridWidget* grid = &m_grid->Grid();
    connect(grid, &GridWidget::EditAsked, this,
            [this](int key) { Guarded("grdData", [this, key] { m_edit->GridKey(key); }); });
    connect(grid, &GridWidget::DeleteAsked, this,
            [this] { Guarded("grdData", [this] { m_edit->DeleteKey(); }); });
    connect(m_grid, &DataGridView::ToggleAsked, this,
            [this](int row) { Guarded("chkTogg", [this, row] { m_toggles->ToggleInGrid(row); }); });
    m_graphs.Listen(
        {.toggle =
             [this](int row) { Guarded("mfrmModelGraph", [this, row] { m_toggles->ToggleInGraph(row); }); },
         .highlight = [this](int row) { m_grid->Highlight(row); },
         .edited =
             [this] {
                 EnableControls();
                 m_graphCommands.Follow();
             }});
    connect(&m_edit->Steps(), &QUndoStack::indexChanged, this, &frmVelt3::EnableControls);
}

void frmVelt3::LetGoOfProject()
{
    m_edit->LetGo();
    m_fitManager.hide();
    m_projections.LetGo();
    m_graphs.Clear(false);
    m_graphCommands.CloseWithoutGraphs();
}

void frmVelt3::ShowNoProject()
{
    m_edit->TakeDataSet();
    m_units.Forget();
    ShowCaption();
    ShowHint(true);
    m_number->clear();
}

void frmVelt3::Command(const QString& name)
{
    if (name == "mnuExit") // the close asks, and is refused while a command runs
        close();
    else if (name == "mnuHelpContents") // to be read while a command runs, and beside a cell that is open
        Attempt(name, [this] { m_help.ShowContents(); });
    else
        Guarded(name, m_commands.at(name));
}

void frmVelt3::Guarded(const QString& name, const std::function<void()>& work)
{
    if (m_busy)
        return;
    // A cell that is being typed in is stored first; one that is refused stays in front.
    if (name.startsWith("mnu") && !KeepsTheCell(name) && !m_edit->MayLeaveCell()) {
        EnableControls(); // the click has already changed the mark at Edit Mode
        return;
    }
    const Busy busy(m_busy);
    Attempt(name, work);
    Attempt(name, [this] { SettleGraphs(); });
}

/// What comes of the graphs when a command has ended, well or not.
void frmVelt3::SettleGraphs()
{
    if (m_graphs.AnyNew()) {
        YieldToEvents(); // until now the system need not have said how wide the frames of the windows are
        m_graphs.SettleNew();
    }
    m_graphCommands.Follow();
}

/// The one place where a failed command ends: the user is told and the window is usable again.
void frmVelt3::Attempt(const QString& name, const std::function<void()>& work)
{
    const std::string source = "frmVelt3_" + name.toStdString() + "_Click";
    try {
        work();
        return;
    } catch (const VeltError& error) {
        AfterFailure();
        m_run.reporter.HandleError(error, source, FileCommands::AdviceOn(error));
    } catch (const std::bad_alloc&) {
        AfterFailure();
        m_run.reporter.Show({.text = "There is not enough memory for this command. Close other programs or "
                                     "graph windows and try again.",
                             .icon = Icon::Critical});
    } catch (const std::exception& error) {
        AfterFailure();
        m_run.reporter.Show({.text = std::string("The command could not be finished: ") + error.what() +
                                     "\n\n(" + source + ")",
                             .icon = Icon::Critical});
    }
}

void frmVelt3::AfterFailure()
{
    HourglassOff();
    StatusText(m_run.globals.Ready);
    EnableControls();
}

void frmVelt3::OpenPath(const QString& path)
{
    Guarded("mnuOpen", [&] { m_files.Open(path.toStdString()); });
}

void frmVelt3::NoteOpened(const std::string& path)
{
    NoteFile(path);
    m_units.Opened(path);
}

void frmVelt3::NoteSaved(const std::string& path)
{
    NoteFile(path);
    m_units.Saved(path);
}

void frmVelt3::NoteFile(const std::string& path)
{
    m_recent.Note(QString::fromStdString(path));
    m_menu->ListRecent(m_recent.Paths());
}

void frmVelt3::ShowFitManager()
{
    RestoreFitManager();
    if (!m_fitManager.testAttribute(Qt::WA_Moved)) // later where the user left it
        m_fitManager.move(frameGeometry().center() - m_fitManager.rect().center());
    m_fitManager.show();
    m_fitManager.raise();
    m_fitManager.activateWindow();
}

/// One fit cannot be added twice, and none is loaded while data are edited.
void frmVelt3::RestoreFitManager()
{
    const bool working = FileOpen() && !m_edit->EditMode();
    const clsMethManager& fits = m_project.Fits();
    m_fitManager.Restore(m_project.Data(), {.add = working && fits.MethDefined() && !fits.FitLogged(),
                                            .loadAndDelete = working});
}

void frmVelt3::KeepResultsInSight()
{
    activateWindow();
    m_graphs.RaiseHistograms();
    if (m_report.isVisible())
        m_report.raise();
}

void frmVelt3::StatusText(const std::string& text)
{
    m_status->setText(QString::fromStdString(text));
    YieldToEvents();
}

void frmVelt3::HourglassOn()
{
    if (m_hourglass)
        return;
    QApplication::setOverrideCursor(Qt::WaitCursor);
    m_hourglass = true;
}

void frmVelt3::HourglassOff()
{
    if (!m_hourglass)
        return;
    QApplication::restoreOverrideCursor();
    m_hourglass = false;
}

void frmVelt3::AddModelGraph(std::shared_ptr<ModelGraph> graph)
{
    m_units.Units().Apply(*graph);
    m_graphs.Add(std::move(graph));
    ShowNewGraph();
}

void frmVelt3::AddProjGraph(std::shared_ptr<ProjGraph> graph)
{
    m_units.Units().Apply(*graph);
    m_graphs.Add(std::move(graph));
    ShowNewGraph();
}

void frmVelt3::ShowNewGraph()
{
    if (m_report.isVisible())
        m_report.raise(); // on a small screen a new graph would cover it
    YieldToEvents();
    EnableControls();
}

void frmVelt3::ClearGraphs(bool histogramsOnly)
{
    m_graphs.Clear(histogramsOnly);
    m_graphCommands.CloseWithoutGraphs();
    YieldToEvents();
}

/// The one way the table is brought into step with the data set.
void frmVelt3::SetUpDataGrid()
{
    m_project.FileOpen(true);
    ShowCaption();
    m_edit->Sheet().Arrange();
    m_grid->Show(&m_edit->Sheet());
    ShowHint(m_project.Data().ShownRows() == 0);
    EnableControls();
}

MenuState frmVelt3::Menu(bool clipboardHasText) const
{
    return MenuStateOf({.editMode = m_edit->EditMode(),
                        .fileOpen = FileOpen(),
                        .fitDefined = m_project.Fits().MethDefined(),
                        .bootstrapsDone = m_project.Fits().IsBSDone(),
                        .projScenarios = m_project.Data().NumProjScenarios(),
                        .currMethType = m_project.Fits().CurrMethType(),
                        .fitEverMade = m_project.FitEverMade(),
                        .anyGraph = !m_graphs.Empty(),
                        .clipboardHasText = clipboardHasText});
}

void frmVelt3::EnableControls()
{
    const MenuState menu = Menu();
    m_menu->Apply(menu);
    m_projections.Follow(menu.projections && menu.viewProj);
    m_menu->ListGraphs(m_graphs.UserTitles());
    m_menu->ListSteps(m_edit->Steps());
    if (m_fitManager.isVisible())
        RestoreFitManager();
    if (!m_busy) // while a command runs a fit may be half done
        m_graphCommands.Follow();
}

/// The clipboard is looked at only here: asking another program for it may take a while.
void frmVelt3::OnEditMenu()
{
    if (m_edit->MayLeaveCell())
        m_menu->Apply(Menu(m_edit->ClipboardHasText()));
}

void frmVelt3::ShowParameterReport(const ParameterReport* report)
{
    if (!report) {
        m_report.hide();
        return;
    }
    m_report.Show(*report);
    // At the right edge, where the graphs that cascade from this window do not cover it; later where the user
    // left it, unless the limits have made it too wide for that.
    const QRect free = screen()->availableGeometry();
    const int mostRight = free.right() - m_report.sizeHint().width() - 2 * fontMetrics().height();
    // Some window managers place what is inside the frame, and the title bar would be out of sight.
    const int titleBar = style()->pixelMetric(QStyle::PM_TitleBarHeight);
    if (!m_reportPlaced)
        m_report.move(mostRight, std::max(free.top(), frameGeometry().top()) + titleBar);
    else if (m_report.x() > mostRight)
        m_report.move(mostRight, m_report.y());
    m_reportPlaced = true;
}

std::unique_ptr<VELT_ContourPlot> frmVelt3::NewContourPlot()
{
    return m_graphs.NewContourPlot();
}

void frmVelt3::ShowDataSet()
{
    ShowCaption();
    ShowHint(m_project.Data().ShownRows() == 0);
}

void frmVelt3::ShowCaption()
{
    setWindowTitle(main_words::Caption(FileOpen() ? &m_project.Data() : nullptr));
}

void frmVelt3::ShowHint(bool noData)
{
    m_hint->setText(main_words::Hint(FileOpen()));
    const bool comesBack = !noData && m_pages->currentWidget() != m_grid;
    m_pages->setCurrentWidget(noData ? static_cast<QWidget*>(m_hint) : m_grid);
    if (comesBack)
        m_grid->setFocus(); // it had to give the keyboard away
}

void frmVelt3::closeEvent(QCloseEvent* event)
{
    // Work in progress stands on objects that a close would take away; its own Cancel ends it first. A save
    // that fails on the way is told as that of any command, and keeps the window.
    bool leaves = false;
    Guarded("mnuExit", [&] { leaves = m_projections.Editor().MayLeaveCell() && m_files.MayExit(); });
    if (!leaves) {
        event->ignore();
        return;
    }
    m_report.hide();
    m_fitManager.hide();
    m_help.Close();
    m_projections.LetGo();
    m_graphs.Clear(false);
    m_graphCommands.CloseWithoutGraphs();
    event->accept();
}

void frmVelt3::dragEnterEvent(QDragEnterEvent* event)
{
    if (!m_busy && !m_edit->EditMode() && !main_words::FileIn(*event->mimeData()).isEmpty())
        event->acceptProposedAction();
}

void frmVelt3::dropEvent(QDropEvent* event)
{
    const QString path = main_words::FileIn(*event->mimeData());
    event->acceptProposedAction();
    // Queued, so that the program the file comes from is not kept waiting for the questions of an import.
    QMetaObject::invokeMethod(
        this, [this, path] { OpenPath(path); }, Qt::QueuedConnection);
}
