// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/frmVelt3.h"

#include "base/FileType.h"
#include "base/Paths.h"
#include "base/StringTable.h"
#include "base/Text.h"
#include "fit/ParameterReport.h"
#include "graphs/VELT_ContourPlot.h"
#include "shell/MainMenu.h"
#include "toolkit/Words.h"
#include "views/DataGridView.h"

#include <QApplication>
#include <QCloseEvent>
#include <QDragEnterEvent>
#include <QFileDialog>
#include <QLabel>
#include <QMimeData>
#include <QScreen>
#include <QStackedWidget>
#include <QStatusBar>
#include <QUrl>

#include <algorithm>
#include <map>
#include <new>

namespace
{
constexpr const char* kTitle = "VELT 3.0";

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

/// The one file a drag carries when this version can open it; else empty.
QString TextFileIn(const QMimeData& mime)
{
    if (mime.urls().size() != 1 || !mime.urls().first().isLocalFile())
        return {};
    const QString path = mime.urls().first().toLocalFile();
    return path.endsWith(".txt", Qt::CaseInsensitive) ? path : QString();
}
} // namespace

frmVelt3::frmVelt3(IUser* user) : m_run(user ? *user : m_desktopUser, *this, m_meter, m_random)
{
    setObjectName("frmVelt3");
    BuildWindow();
    InitObjects();
    connect(&m_report, &frmParams::confIntsRequested, this,
            [this] { Guarded("cmdCIs", [this] { OnReportConfInts(); }); });
    ShowCaption();
    ShowHint(true);
    StatusText(m_run.globals.Ready);
    EnableControls();
}

frmVelt3::~frmVelt3()
{
    HourglassOff();
    m_grid->Show(nullptr); // a window that is destroyed while it shows lays its table out once more
    m_meth.reset();        // it still speaks to this window and to the data
}

void frmVelt3::BuildWindow()
{
    m_menu = new MainMenu(*this);
    connect(m_menu, &MainMenu::Chosen, this, &frmVelt3::Command);
    connect(m_menu, &MainMenu::AboutToShow, this, &frmVelt3::EnableControls);
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

    setAcceptDrops(true);
    const QFontMetrics metrics = fontMetrics();
    const QSize wanted(metrics.averageCharWidth() * 150, metrics.height() * 44);
    resize(wanted.boundedTo(screen()->availableSize() * 9 / 10));
    setMinimumSize(metrics.averageCharWidth() * 50, metrics.height() * 14);
}

/// A new data set and a new manager, always as a pair.
void frmVelt3::InitObjects()
{
    m_fileOpen = false;
    m_fitEverMade = false;
    m_grid->Show(nullptr);
    m_meth.reset();
    m_data = std::make_unique<clsVeltData>(m_run);
    m_meth = std::make_unique<clsMethManager>(m_run);
    m_meth->Create(*m_data);
    m_graphs.Clear(false);
}

void frmVelt3::Command(const QString& name)
{
    static const std::map<QString, std::function<void(frmVelt3&)>> commands{
        {"mnuOpen", &frmVelt3::OnOpen},
        {"mnuClose", &frmVelt3::OnClose},
        {"mnuDataPlots", &frmVelt3::OnDataPlots},
        {"mnuNewModel", &frmVelt3::OnNewModel},
        {"mnuNewParams", &frmVelt3::OnNewParams},
        {"mnuParameters", [](frmVelt3& window) { window.m_meth->DisplayParameters(true); }},
        {"mnuGenerateConfInts", &frmVelt3::OnGenerateConfInts},
        {"mnuDisplayConfInts", &frmVelt3::OnDisplayConfInts},
        {"mnuSettings", [](frmVelt3& window) { window.m_meth->MinimisationOptions(); }},
        {"mnuAbout", &frmVelt3::OnAbout},
    };
    if (name == "mnuExit") // the close asks, and is refused while a command runs
        close();
    else
        Guarded(name, [&] { commands.at(name)(*this); });
}

/// The one place where a failed command ends: the user is told and the window is usable again.
void frmVelt3::Guarded(const QString& name, const std::function<void()>& work)
{
    if (m_busy)
        return;
    const Busy busy(m_busy);
    const std::string source = "frmVelt3_" + name.toStdString() + "_Click";
    try {
        work();
        return;
    } catch (const VeltError& error) {
        AfterFailure();
        m_run.reporter.HandleError(error, source);
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

void frmVelt3::OnOpen()
{
    if (!MayClearFit())
        return;
    CloseDataSet();
    const QString path = QFileDialog::getOpenFileName(this, {}, {}, tr("Text (*.txt)"));
    if (!path.isEmpty())
        Load(path.toStdString());
}

void frmVelt3::OpenPath(const QString& path)
{
    Guarded("mnuOpen", [&] {
        if (!MayClearFit())
            return;
        CloseDataSet();
        Load(path.toStdString());
    });
}

void frmVelt3::Load(const std::string& path)
{
    StatusText(LoadResString(61));
    FileType type = GetFileType(path);
    if (!CheckFileAccess(path, FileAccess::Read, m_run.reporter))
        type = FileType::NotRecognised;
    if (type == FileType::Text) {
        // A failed import leaves an empty data set, which is shown as it is: it explains itself.
        m_meth->ImportASCIIFile(path);
        SetUpDataGrid();
    } else if (type == FileType::Velt3 || type == FileType::Velt2) {
        m_run.reporter.Show(
            {.text = "This version cannot open projects yet. Open a text file (*.txt) instead."});
    } else {
        m_run.reporter.Show({.text = LoadResString(60)});
    }
    StatusText(m_run.globals.Ready);
    EnableControls();
}

void frmVelt3::OnClose()
{
    if (MayClearFit())
        CloseDataSet();
}

bool frmVelt3::MayClearFit()
{
    return !m_meth->MethDefined() ||
           m_run.reporter.Show({.text = LoadResString(1930), .buttons = Buttons::YesNo}) == Answer::Yes;
}

void frmVelt3::CloseDataSet()
{
    m_meth->DisplayParameters(false);
    ClearGraphs(false);
    InitObjects();
    ShowCaption();
    ShowHint(true);
    m_number->clear();
    EnableControls();
}

void frmVelt3::OnDataPlots()
{
    if (const std::int32_t series = m_meth->GetUserDataPlot(); series != 0)
        m_meth->PlotData(series);
}

void frmVelt3::OnNewModel()
{
    if (!MayClearFit())
        return;
    ClearGraphs(false);
    m_meth->FitNewModel(false);
    m_fitEverMade = true;
    SetUpDataGrid();
}

void frmVelt3::OnNewParams()
{
    if (!MayClearFit())
        return;
    ClearGraphs(false);
    m_meth->FitNewModel(true);
    SetUpDataGrid();
}

void frmVelt3::OnGenerateConfInts()
{
    Answer answer = Answer::Yes;
    if (m_meth->IsBSDone())
        answer = m_run.reporter.Show(
            {.text = LoadResString(1945), .icon = Icon::Question, .buttons = Buttons::YesNoCancel});
    if (answer == Answer::Yes)
        m_meth->GenerateBootStraps();
    if (answer != Answer::Cancel && m_meth->IsBSDone())
        OnDisplayConfInts();
    TakeFocus();
}

void frmVelt3::OnDisplayConfInts()
{
    if (!m_meth->IsBSDone())
        m_meth->GenerateBootStraps();
    if (m_meth->GetUserConfidenceIntervals()) {
        m_meth->DisplayBootStrapHistograms();
        EnableControls();
    }
    TakeFocus();
}

/// The focus comes back to this window, but the histograms and limits that were asked for stay in sight.
void frmVelt3::TakeFocus()
{
    activateWindow();
    m_graphs.RaiseHistograms();
    if (m_report.isVisible())
        m_report.raise();
}

/// The report's button differs from the menu: a broken run ends it without a further message.
void frmVelt3::OnReportConfInts()
{
    if (!m_meth->IsBSDone())
        m_meth->GenerateBootStraps();
    if (m_meth->IsBSDone() && m_meth->GetUserConfidenceIntervals())
        m_meth->DisplayBootStrapHistograms();
    EnableControls();
}

void frmVelt3::OnAbout()
{
    m_run.reporter.Show({.text = "VELT 3.0\n\n"
                                 "Catch, effort and abundance index data of a fishery: stock sizes, "
                                 "catchability and their confidence intervals.\n\n"
                                 "This program is free software under the GNU General Public License, "
                                 "version 3 or later. It comes without any warranty.",
                         .icon = Icon::Information,
                         .title = "About VELT 3.0"});
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
    m_graphs.Add(std::move(graph));
    if (m_report.isVisible())
        m_report.raise(); // on a small screen a new graph would cover it
    YieldToEvents();
    EnableControls();
}

void frmVelt3::ClearGraphs(bool histogramsOnly)
{
    m_graphs.Clear(histogramsOnly);
    YieldToEvents();
}

/// The one way the table is brought into step with the data set.
void frmVelt3::SetUpDataGrid()
{
    m_fileOpen = true;
    ShowCaption();
    m_grid->Show(m_data.get());
    ShowHint(m_data->ShownRows() == 0);
    EnableControls();
}

void frmVelt3::EnableControls()
{
    m_fitEverMade = m_fitEverMade || m_run.FitReloaded;
    m_menu->Apply(MenuStateOf({.editMode = false, // the data cannot be edited in this version
                               .fileOpen = m_fileOpen,
                               .fitDefined = m_meth->MethDefined(),
                               .bootstrapsDone = m_meth->IsBSDone(),
                               .projScenarios = m_data->NumProjScenarios(),
                               .currMethType = m_meth->CurrMethType(),
                               .fitEverMade = m_fitEverMade,
                               .anyGraph = !m_graphs.Empty()}));
    m_menu->ListGraphs(m_graphs.UserTitles());
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
    if (!m_reportPlaced)
        m_report.move(mostRight, std::max(free.top(), frameGeometry().top()));
    else if (m_report.x() > mostRight)
        m_report.move(mostRight, m_report.y());
    m_reportPlaced = true;
}

std::unique_ptr<VELT_ContourPlot> frmVelt3::NewContourPlot()
{
    return m_graphs.NewContourPlot();
}

void frmVelt3::YieldToEvents()
{
    QCoreApplication::processEvents();
}

void frmVelt3::ShowCaption()
{
    QString caption = kTitle;
    if (!m_data->DSFName().empty())
        caption +=
            " - " + QString::fromStdString(GetFileName(m_data->DSFName()) + " - " + Trim(m_data->DSDesc()));
    setWindowTitle(caption);
}

void frmVelt3::ShowHint(bool noData)
{
    m_hint->setText(m_fileOpen
                        ? tr("This data set has no columns. Open another text file.")
                        : tr("To begin, choose Open from the File menu, or drop a text file (*.txt) here."));
    m_pages->setCurrentWidget(noData ? static_cast<QWidget*>(m_hint) : m_grid);
}

void frmVelt3::closeEvent(QCloseEvent* event)
{
    // Work in progress stands on objects that a close would take away; its own Cancel ends it first.
    if (m_busy || !MayClearFit()) {
        event->ignore();
        return;
    }
    m_report.hide();
    m_graphs.Clear(false);
    event->accept();
}

void frmVelt3::dragEnterEvent(QDragEnterEvent* event)
{
    if (!m_busy && !TextFileIn(*event->mimeData()).isEmpty())
        event->acceptProposedAction();
}

void frmVelt3::dropEvent(QDropEvent* event)
{
    const QString path = TextFileIn(*event->mimeData());
    event->acceptProposedAction();
    // Queued, so that the program the file comes from is not kept waiting for the questions of an import.
    QMetaObject::invokeMethod(
        this, [this, path] { OpenPath(path); }, Qt::QueuedConnection);
}
