// SPDX-License-Identifier: GPL-3.0-or-later
#include "views/DataGridModel.h"

#include "toolkit/Fonts.h"
#include "views/PlotStyle.h"

#include <QApplication>
#include <QBrush>
#include <QPalette>

namespace
{
/// The highlight of the graphs, thin enough to read through.
QBrush HighlightOver(const QColor& base)
{
    const QColor mark = plot_style::kHighlighted;
    constexpr double kShare = 0.4;
    const auto mix = [](int over, int under) {
        return static_cast<int>(kShare * over + (1.0 - kShare) * under);
    };
    return QColor(mix(mark.red(), base.red()), mix(mark.green(), base.green()),
                  mix(mark.blue(), base.blue()));
}
} // namespace

void DataGridModel::Show(const TableSheet* sheet)
{
    beginResetModel();
    m_sheet = sheet;
    m_rows = sheet ? sheet->Rows() - TableSheet::FirstDataRow : 0;
    m_columns = sheet ? sheet->Cols() : 0;
    endResetModel();
}

void DataGridModel::Refresh(bool sameSize)
{
    if (!sameSize)
        Show(m_sheet);
    else if (m_rows > 0)
        emit dataChanged(index(0, 0), index(m_rows - 1, m_columns - 1));
}

void DataGridModel::Highlight(int row)
{
    m_highlight = row;
    Refresh(true);
}

QString DataGridModel::FullValue(const QModelIndex& index) const
{
    if (!m_sheet || !index.isValid() || index.column() < TableSheet::FirstDataCol)
        return {};
    return QString::fromStdString(m_sheet->ExactText(index.column(), index.row() + TableSheet::FirstDataRow));
}

bool DataGridModel::BoxEnabled(int row) const
{
    return m_sheet && row >= TableSheet::FirstDataRow && row < m_sheet->Rows() && !m_editMode &&
           m_sheet->Included(row);
}

int DataGridModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : m_rows;
}

int DataGridModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : m_columns;
}

QString DataGridModel::IncludeHint(int row) const
{
    if (m_editMode)
        return tr("Leave Edit Mode to take periods into the fit or out of it");
    if (!m_sheet->Included(row))
        return tr("The data of this period do not allow it in a fit");
    return m_sheet->ToggledIn(row) ? tr("In the fit. A click or Ctrl+Space takes it out.")
                                   : tr("Left out of the fit. A click or Ctrl+Space takes it in.");
}

QVariant DataGridModel::IncludeData(int row, int role) const
{
    switch (role) {
    case Qt::CheckStateRole:
        return m_sheet->ToggledIn(row) && (m_editMode || m_sheet->Included(row)) ? Qt::Checked
                                                                                 : Qt::Unchecked;
    case Qt::ToolTipRole:
    case Qt::AccessibleTextRole:
        return IncludeHint(row);
    default:
        return {};
    }
}

QVariant DataGridModel::Look(const QModelIndex& index, int role) const
{
    const bool title = index.column() < TableSheet::FirstDataCol; // the first two are titles of the rows
    const QPalette palette = QApplication::palette();
    if (role == Qt::ForegroundRole)
        return title ? QVariant(palette.buttonText()) : QVariant();
    if (m_highlight == index.row() + TableSheet::FirstDataRow)
        return HighlightOver(title ? palette.button().color() : palette.base().color());
    return title ? QVariant(palette.button()) : QVariant();
}

QVariant DataGridModel::data(const QModelIndex& index, int role) const
{
    if (!m_sheet || !index.isValid())
        return {};
    const int row = index.row() + TableSheet::FirstDataRow;
    const int col = index.column();
    if (role == Qt::BackgroundRole || role == Qt::ForegroundRole)
        return Look(index, role);
    if (col == TableSheet::kIncludeColumn)
        return IncludeData(row, role);
    switch (role) {
    case Qt::DisplayRole:
    case Qt::AccessibleTextRole:
        return QString::fromStdString(m_sheet->Text(row, col));
    case Qt::TextAlignmentRole:
        return QVariant::fromValue(Qt::AlignRight | Qt::AlignVCenter);
    case Qt::ToolTipRole:
        return FullValue(index); // the format may hide decimals
    case Qt::FontRole:
        return col < TableSheet::FirstDataCol ? QVariant() : QVariant(FontOf(m_sheet->TextFormat(col)));
    default:
        return {};
    }
}

QVariant DataGridModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (!m_sheet || orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return {};
    return QString::fromStdString(m_sheet->Title(section));
}

Qt::ItemFlags DataGridModel::flags(const QModelIndex& index) const
{
    if (index.column() == TableSheet::kIncludeColumn)
        return BoxEnabled(index.row() + TableSheet::FirstDataRow)
                   ? Qt::ItemIsEnabled | Qt::ItemIsUserCheckable
                   : Qt::ItemIsUserCheckable;
    return Qt::ItemIsEnabled | Qt::ItemIsSelectable;
}

bool DataGridModel::setData(const QModelIndex& index, const QVariant&, int role)
{
    if (role == Qt::DisplayRole)
        emit dataChanged(index, index);
    return role == Qt::DisplayRole;
}
