// SPDX-License-Identifier: GPL-3.0-or-later
#include "views/frmProjections.h"

#include "toolkit/Words.h"
#include "views/GridWidget.h"
#include "views/ScenarioGrid.h"

#include <QCloseEvent>
#include <QComboBox>
#include <QCursor>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QVBoxLayout>

namespace
{
constexpr int kCloseEntry = 12;
constexpr int kTitle = 901;
constexpr int kProjections = 902;
constexpr int kAddScenario = 903;
constexpr int kDeleteScenario = 904;
constexpr int kAddRow = 905;
constexpr int kDeleteRow = 906;
constexpr int kEdit = 907;
constexpr int kCopy = 908;
constexpr int kPaste = 909;

bool StartsAValue(int key)
{
    return (key >= '0' && key <= '9') || key == '-' || key == '.';
}
} // namespace

frmProjections::frmProjections(IUser& user, IClipboard& clipboard, QWidget* parent)
    : QWidget(parent, Qt::Window), m_run([](const char*, const auto& command) { command(); }),
      m_sheet(user, *this), m_control(user, clipboard), m_grid(new ScenarioGrid(m_sheet)), m_note(new QLabel)
{
    setObjectName("frmProjections");
    setWindowTitle(Words(kTitle));
    m_control.Create(m_sheet);
    m_grid->Cells().Attach(&m_control);
    m_note->setObjectName("lblNote");
    m_note->setTextFormat(Qt::PlainText);
    m_note->setWordWrap(true);
    auto* column = new QVBoxLayout(this);
    column->addWidget(m_grid, 1);
    column->addWidget(m_note);
    BuildMenus();
    frmProjections::Note({});
    connect(&m_grid->Cells(), &GridWidget::EditAsked, this,
            [this](int key) { m_run("grdProj", [this, key] { GridKey(key); }); });
    connect(&m_grid->Cells(), &GridWidget::DeleteAsked, this,
            [this] { m_run("grdProj", [this] { Clear(); }); });
    connect(m_grid, &ScenarioGrid::UnitPicked, this,
            [this](int col, int unit) { m_run("cmbUnits", [=, this] { m_sheet.Unit(col, unit); }); });
    const int em = fontMetrics().height();
    resize(56 * em, 28 * em);
}

frmProjections::~frmProjections()
{
    m_grid->Cells().Attach(nullptr);
    delete m_grid; // it asks its sheet to the end
}

QAction* frmProjections::AddCommand(QMenu& menu, const char* name, int captionId,
                                    void (frmProjections::*command)())
{
    QAction* action = menu.addAction(Words(captionId));
    action->setObjectName(QString::fromLatin1(name));
    connect(action, &QAction::triggered, this,
            [this, name, command] { m_run(name, [this, command] { (this->*command)(); }); });
    return action;
}

void frmProjections::BuildMenus()
{
    auto* bar = new QMenuBar;
    QMenu* scenarios = bar->addMenu(Words(kProjections));
    AddCommand(*scenarios, "mnuAddScenario", kAddScenario, &frmProjections::AddScenario);
    AddCommand(*scenarios, "mnuDeleteScenario", kDeleteScenario, &frmProjections::DeleteScenario);
    scenarios->addSeparator();
    AddCommand(*scenarios, "mnuAddRow", kAddRow, &frmProjections::AddRow);
    AddCommand(*scenarios, "mnuDeleteRow", kDeleteRow, &frmProjections::DeleteRow);
    scenarios->addSeparator();
    AddCommand(*scenarios, "mnuExit", kCloseEntry, &frmProjections::CloseWindow)
        ->setShortcut(QKeySequence::Close);
    m_mnuEdit = bar->addMenu(Words(kEdit));
    m_mnuEdit->setObjectName("mnuEdit");
    m_mnuCopy = AddCommand(*m_mnuEdit, "mnuCopy", kCopy, &frmProjections::Copy);
    m_mnuCopy->setShortcut(QKeySequence::Copy);
    m_mnuPaste = AddCommand(*m_mnuEdit, "mnuPaste", kPaste, &frmProjections::Paste);
    m_mnuPaste->setShortcut(QKeySequence::Paste);
    connect(m_mnuEdit, &QMenu::aboutToShow, this, &frmProjections::ShowOffers);
    connect(
        m_mnuEdit, &QMenu::aboutToHide, this,
        [this] { // their keys must work while the menu is closed
            m_mnuCopy->setEnabled(true);
            m_mnuPaste->setEnabled(true);
        },
        Qt::QueuedConnection);
    layout()->setMenuBar(bar);
}

void frmProjections::SetData(clsVeltData* data)
{
    m_data = data;
    m_sheet.Load(data);
    m_grid->Refresh();
    if (data)
        SelectFirst();
    Note({});
}

void frmProjections::Follow(bool available)
{
    setEnabled(available);
    if (available && m_data && m_sheet.IsOutOfStep())
        SetData(m_data);
}

void frmProjections::SelectFirst()
{
    m_grid->Cells().Select(GridSelection::At(ScenarioSheet::kFirstDataRow, ScenarioSheet::kFirstCol));
    m_grid->Refresh();
}

std::string frmProjections::ProjName() const
{
    return m_sheet.Text(ScenarioSheet::kTitleRow, m_grid->Cells().Selected().col);
}

IFlexGrid& frmProjections::FlexGrid()
{
    return m_grid->Cells();
}

ITextBox& frmProjections::txtBox()
{
    return m_grid->Cells().Box();
}

ActiveControl frmProjections::Active() const
{
    return m_grid->Cells().Box().isVisible() ? ActiveControl::TextBox : ActiveControl::Grid;
}

void frmProjections::GridPopUpMenu()
{
    m_mnuEdit->popup(QCursor::pos());
}

GridSelection frmProjections::Edited() const
{
    return GridSelection::At(m_control.OldRow(), m_control.OldCol());
}

void frmProjections::Changed()
{
    m_grid->Refresh();
    emit ScenariosChanged();
}

void frmProjections::Note(const std::string& text)
{
    m_note->setText(text.empty() ? tr("Type in the next free column or row to add a scenario or a period. "
                                      "Values are kept as whole numbers.")
                                 : QString::fromStdString(text));
}

/// Beside the scenarios a key adds one, below the periods a row; a digit is typed there at once.
void frmProjections::GridKey(int key)
{
    GridWidget& cells = m_grid->Cells();
    const GridSelection at = cells.Selected();
    const bool newScenario = !m_sheet.IsScenario(at.col);
    const bool newRow = !newScenario && !m_sheet.IsTitle(at.row) && !m_sheet.IsPoint(at.row);
    if (newScenario)
        AddScenario();
    else if (newRow)
        AddRow();
    const GridSelection now = cells.Selected();
    if (!m_sheet.IsScenario(now.col) || !(m_sheet.IsTitle(now.row) || m_sheet.IsPoint(now.row)))
        return; // there was no room
    if (now.row == ScenarioSheet::kUnitRow)
        m_grid->OpenUnits();
    else if (!(newScenario || newRow) || StartsAValue(key))
        m_control.GridEdit(key);
}

void frmProjections::AddScenario()
{
    if (!m_control.CommitIfOpen())
        return;
    const int before = m_sheet.Scenarios();
    m_sheet.AddScenario();
    if (m_sheet.Scenarios() == before)
        return;
    GridWidget& cells = m_grid->Cells();
    const int row =
        m_sheet.IsPoint(cells.Selected().row) ? cells.Selected().row : ScenarioSheet::kFirstDataRow;
    cells.Select(GridSelection::At(row, m_sheet.Scenarios()));
    cells.setFocus();
}

void frmProjections::DeleteScenario()
{
    m_control.GridGotFocus(); // what is being typed goes with the scenario, or stays as it was
    if (m_sheet.DeleteScenario(m_grid->Cells().Selected().col))
        SelectFirst();
}

void frmProjections::AddRow()
{
    if (!m_control.CommitIfOpen())
        return;
    const int before = m_sheet.Points();
    m_sheet.AddRow();
    if (m_sheet.Points() == before)
        return;
    GridWidget& cells = m_grid->Cells();
    cells.Select(
        GridSelection::At(ScenarioSheet::kFirstDataRow + m_sheet.Points() - 1, cells.Selected().col));
    cells.setFocus();
}

void frmProjections::DeleteRow()
{
    if (m_control.CommitIfOpen())
        m_sheet.DeleteRow();
}

/// Whether all selected cells hold values of scenarios.
bool frmProjections::InsideValues() const
{
    const GridSelection selected = m_grid->Cells().Selected();
    return m_sheet.IsPoint(selected.Top()) && m_sheet.IsPoint(selected.Bottom()) &&
           m_sheet.IsScenario(selected.Left()) && m_sheet.IsScenario(selected.Right());
}

bool frmProjections::MayPaste() const
{
    return Active() == ActiveControl::TextBox || InsideValues();
}

void frmProjections::ShowOffers()
{
    m_mnuCopy->setEnabled(true);
    m_mnuPaste->setEnabled(MayPaste() && m_control.ClipboardHasText());
}

void frmProjections::Paste()
{
    if (MayPaste())
        m_control.PasteClick();
    else
        Note("To paste, select a value of a scenario first; a block adds the rows and scenarios it needs.");
}

void frmProjections::Clear()
{
    if (InsideValues())
        m_control.ClearClick();
}

void frmProjections::CloseWindow()
{
    close();
}

/// Hides the window; what an open cell holds is stored first, or stays in front.
void frmProjections::closeEvent(QCloseEvent* event)
{
    if (!m_control.CommitIfOpen()) {
        event->ignore();
        return;
    }
    hide();
    event->accept();
}
