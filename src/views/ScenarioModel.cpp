// SPDX-License-Identifier: GPL-3.0-or-later
#include "views/ScenarioModel.h"

#include <QApplication>
#include <QFont>
#include <QPalette>

ScenarioModel::ScenarioModel(ScenarioSheet& sheet, QObject* parent)
    : QAbstractTableModel(parent), m_sheet(sheet), m_rows(sheet.Rows()), m_columns(sheet.Cols())
{
}

void ScenarioModel::Refresh()
{
    if (m_rows != m_sheet.Rows() || m_columns != m_sheet.Cols()) {
        beginResetModel();
        m_rows = m_sheet.Rows();
        m_columns = m_sheet.Cols();
        endResetModel();
        return;
    }
    emit dataChanged(index(0, 0), index(m_rows - 1, m_columns - 1));
    emit headerDataChanged(Qt::Vertical, 0, m_rows - 1);
}

int ScenarioModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : m_rows;
}

int ScenarioModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : m_columns;
}

QVariant ScenarioModel::data(const QModelIndex& index, int role) const
{
    const bool isTitle = m_sheet.IsTitle(index.row());
    const bool used = m_sheet.IsScenario(index.column()) && (isTitle || m_sheet.IsPoint(index.row()));
    switch (role) {
    case Qt::DisplayRole:
    case Qt::ToolTipRole:
        return role == Qt::ToolTipRole && !isTitle
                   ? QVariant()
                   : QString::fromStdString(m_sheet.Text(index.row(), index.column()));
    case Qt::TextAlignmentRole:
        return QVariant::fromValue(isTitle ? Qt::AlignCenter : Qt::AlignRight | Qt::AlignVCenter);
    case Qt::BackgroundRole: // what is not there yet looks like the ground that the table lies on
        return used && !isTitle ? QVariant() : QApplication::palette().color(QPalette::Window);
    case Qt::FontRole: {
        QFont font = QApplication::font();
        font.setBold(index.row() == ScenarioSheet::kTitleRow);
        return font;
    }
    default:
        return {};
    }
}

QVariant ScenarioModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation == Qt::Horizontal || role != Qt::DisplayRole)
        return {};
    return QString::fromStdString(m_sheet.Text(section, ScenarioSheet::kTimeCol));
}

bool ScenarioModel::setData(const QModelIndex& index, const QVariant& value, int)
{
    m_sheet.ShowText(index.row(), index.column(), value.toString().toStdString());
    emit dataChanged(index, index);
    return true;
}
