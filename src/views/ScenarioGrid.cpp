// SPDX-License-Identifier: GPL-3.0-or-later
#include "views/ScenarioGrid.h"

#include "views/GridWidget.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QScrollBar>
#include <QVBoxLayout>

#include <algorithm>

namespace
{
constexpr int kHeads = ScenarioSheet::kFirstDataRow;

/// The values, under rows that another table shows. Keys walk through all rows as if there were one table.
class ScenarioCells : public GridWidget
{
public:
    explicit ScenarioCells(QTableView& heads) : GridWidget(ScenarioSheet::kFirstCol, 0), m_heads(heads) {}

    QTableView& ViewOf(int row) override { return row < kHeads ? m_heads : *this; }

protected:
    /// Moves between the two tables, and within the rows that stay in view: to Qt these rows are hidden here.
    void keyPressEvent(QKeyEvent* event) override
    {
        const GridSelection at = Selected();
        const bool inHeads = at.row < kHeads || (at.row == kHeads && event->key() == Qt::Key_Up);
        const bool plain = event->modifiers() == Qt::NoModifier || event->modifiers() == Qt::KeypadModifier;
        if (!plain || !inHeads || !Walk(event->key(), at))
            GridWidget::keyPressEvent(event);
    }

private:
    /// \return whether the key is one that walks
    bool Walk(int key, const GridSelection& at)
    {
        int row = at.row;
        int col = at.col;
        if (key == Qt::Key_Up)
            --row;
        else if (key == Qt::Key_Down)
            ++row;
        else if (key == Qt::Key_Left || key == Qt::Key_Backtab)
            --col;
        else if (key == Qt::Key_Right || key == Qt::Key_Tab)
            ++col;
        else if (key == Qt::Key_Home)
            col = ScenarioSheet::kFirstCol;
        else if (key == Qt::Key_End)
            col = Cols() - 1;
        else
            return false;
        Select(GridSelection::At(std::clamp(row, 0, Rows() - 1),
                                 std::clamp(col, ScenarioSheet::kFirstCol, Cols() - 1)));
        return true;
    }

    QTableView& m_heads;
};

void SetUp(QTableView& view, const char* name)
{
    view.setObjectName(QString::fromLatin1(name));
    view.setFrameStyle(QFrame::NoFrame);
    view.horizontalHeader()->hide();
    view.verticalHeader()->setSectionsClickable(false);
    view.verticalHeader()->setHighlightSections(false);
    view.verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    view.verticalHeader()->setDefaultAlignment(Qt::AlignCenter);
    view.horizontalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    view.setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
    view.setCornerButtonEnabled(false);
    view.setWordWrap(false);
}
} // namespace

ScenarioGrid::ScenarioGrid(ScenarioSheet& sheet, QWidget* parent)
    : QFrame(parent), m_sheet(sheet), m_model(sheet), m_heads(new QTableView),
      m_cells(new ScenarioCells(*m_heads)), m_units(new QComboBox(m_heads->viewport()))
{
    setFrameStyle(QFrame::StyledPanel);
    SetUp(*m_cells, "grdProj");
    m_cells->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn); // both tables end at the same edge
    m_cells->setModel(&m_model);
    BuildHeads();
    BuildUnits();
    LayOut();
    SizeAndHide();
    connect(m_cells->selectionModel(), &QItemSelectionModel::currentChanged, this, &ScenarioGrid::PlaceUnits);
    connect(m_cells->selectionModel(), &QItemSelectionModel::selectionChanged, this, [this] {
        m_cells->viewport()->update(); // the frame of the current cell moves with it
        m_heads->viewport()->update();
    });
}

void ScenarioGrid::BuildHeads()
{
    SetUp(*m_heads, "grdHeads");
    m_heads->setModel(&m_model);
    m_heads->setSelectionModel(m_cells->selectionModel());
    m_heads->setItemDelegate(m_cells->NewCellPainter(*m_heads));
    m_heads->setFocusPolicy(Qt::NoFocus);
    m_heads->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_heads->setSelectionMode(QAbstractItemView::SingleSelection);
    m_heads->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_heads->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    connect(m_cells->horizontalScrollBar(), &QScrollBar::valueChanged, m_heads->horizontalScrollBar(),
            &QScrollBar::setValue);
    connect(m_heads->horizontalScrollBar(), &QScrollBar::valueChanged, this, [this](int value) {
        m_cells->horizontalScrollBar()->setValue(value);
        PlaceUnits();
    });
    connect(m_heads, &QTableView::pressed, this, [this] {
        m_cells->Pressed();
        if (!m_cells->Box().isVisible())
            m_cells->setFocus();
    });
    connect(m_heads, &QTableView::doubleClicked, this, [this] { emit m_cells->EditAsked(0); });
}

void ScenarioGrid::BuildUnits()
{
    m_units->setObjectName(QStringLiteral("cmbUnits"));
    for (const std::string& unit : ScenarioSheet::Units())
        m_units->addItem(QString::fromStdString(unit));
    m_units->setFocusPolicy(Qt::ClickFocus); // Tab walks through the cells
    m_units->installEventFilter(this);
    connect(m_units, &QComboBox::activated, this,
            [this](int unit) { emit UnitPicked(m_cells->Selected().col, unit); });
}

void ScenarioGrid::LayOut()
{
    auto* above = new QHBoxLayout;
    above->setSpacing(0);
    above->addWidget(m_heads);
    above->addSpacing(m_cells->verticalScrollBar()->sizeHint().width());
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addLayout(above);
    column->addWidget(m_cells, 1);
}

/// Each table shows its own rows; both have the same columns.
void ScenarioGrid::SizeAndHide()
{
    constexpr int kLongestLabel = 12; // a period of eleven characters, and air
    const int rowHeight = std::max(m_units->sizeHint().height(), fontMetrics().height() * 3 / 2);
    const int width = m_units->sizeHint().width() + fontMetrics().averageCharWidth() * 2;
    for (QTableView* view : {m_heads, static_cast<QTableView*>(m_cells)}) {
        const bool heads = view == m_heads;
        view->verticalHeader()->setDefaultSectionSize(heads ? rowHeight : fontMetrics().height() * 3 / 2);
        view->verticalHeader()->setFixedWidth(fontMetrics().averageCharWidth() * kLongestLabel);
        view->horizontalHeader()->setDefaultSectionSize(width);
        view->setColumnHidden(ScenarioSheet::kTimeCol, true);
        for (int row = 0; row < m_model.rowCount(); ++row)
            view->setRowHidden(row, (row < kHeads) != heads);
    }
    m_heads->setFixedHeight(kHeads * rowHeight);
}

void ScenarioGrid::Refresh()
{
    const GridSelection selected = m_cells->Selected();
    const int rows = m_model.rowCount();
    const int columns = m_model.columnCount();
    m_model.Refresh();
    if (rows != m_model.rowCount() || columns != m_model.columnCount()) {
        SizeAndHide();
        m_cells->Select(GridSelection::At(std::min(selected.row, m_model.rowCount() - 1),
                                          std::min(selected.col, m_model.columnCount() - 1)));
    }
    PlaceUnits();
}

/// Over the unit of the current scenario; nowhere in a column that has none.
void ScenarioGrid::PlaceUnits()
{
    const int col = m_cells->Selected().col;
    const bool shown = m_sheet.IsScenario(col);
    m_units->setVisible(shown);
    if (!shown)
        return;
    m_units->setGeometry(m_heads->visualRect(m_model.index(ScenarioSheet::kUnitRow, col)));
    m_units->setCurrentIndex(m_sheet.UnitOf(col));
}

void ScenarioGrid::OpenUnits()
{
    PlaceUnits();
    if (m_units->isVisible()) {
        m_units->setFocus();
        m_units->showPopup();
    }
}

void ScenarioGrid::resizeEvent(QResizeEvent* event)
{
    QFrame::resizeEvent(event);
    PlaceUnits();
}

/// Enter at the list moves on to the values, Escape goes back to the cells.
bool ScenarioGrid::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == m_units && event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent*>(event)->key();
        if (key == Qt::Key_Return || key == Qt::Key_Enter || key == Qt::Key_Escape) {
            if (key != Qt::Key_Escape)
                m_cells->Select(GridSelection::At(ScenarioSheet::kFirstDataRow, m_cells->Selected().col));
            m_cells->setFocus();
            return true;
        }
    }
    return QFrame::eventFilter(watched, event);
}
