// SPDX-License-Identifier: GPL-3.0-or-later
#include "views/DataGridModel.h"

#include "base/NumberText.h"
#include "data/NumberFormat.h"
#include "toolkit/Words.h"

#include <QGuiApplication>
#include <QPalette>

namespace
{
constexpr int kFirstTitle = 1845; // "Tot. Catch Wt", the grid title of column 1
} // namespace

void DataGridModel::Show(const clsVeltData* data)
{
    beginResetModel();
    m_data = data;
    m_dataColOf.clear();
    m_gridColOf.fill(0);
    for (int column = columns::kFirst; data && column <= columns::kLast; ++column) {
        if (!data->ColPresent(column))
            continue;
        m_gridColOf[static_cast<std::size_t>(column)] = FirstDataCol + static_cast<int>(m_dataColOf.size());
        m_dataColOf.push_back(column);
    }
    endResetModel();
}

int DataGridModel::DataColOf(int column) const
{
    return column < FirstDataCol ? 0 : m_dataColOf.at(static_cast<std::size_t>(column - FirstDataCol));
}

QString DataGridModel::FullValue(const QModelIndex& index) const
{
    if (!m_data || !index.isValid() || index.column() < FirstDataCol)
        return {};
    return QString::fromStdString(
        number_text::Shortest(m_data->DB(DataColOf(index.column()), index.row() + 1)));
}

int DataGridModel::rowCount(const QModelIndex& parent) const
{
    return m_data && !parent.isValid() ? m_data->ShownRows() : 0;
}

int DataGridModel::columnCount(const QModelIndex& parent) const
{
    return m_data && !parent.isValid() ? FirstDataCol + static_cast<int>(m_dataColOf.size()) : 0;
}

QString DataGridModel::TextAt(const QModelIndex& index) const
{
    const int row = index.row() + 1;
    if (index.column() == kTimeColumn)
        return QString::number(m_data->MinTimeP() - 1 + row);
    if (index.column() == kIncludeColumn)
        return m_data->Included(row) && m_data->ToggledIn(row) ? QStringLiteral("\u2713")
                                                               : QStringLiteral("\u2013");
    const int column = DataColOf(index.column());
    return QString::fromStdString(FormatNumber(m_data->DB(column, row), m_data->ColFormat(column)));
}

QString DataGridModel::IncludeHint(int row) const
{
    if (!m_data->Included(row))
        return tr("The data of this period do not allow it in a fit");
    return m_data->ToggledIn(row) ? tr("In the fit") : tr("Left out of the fit");
}

QVariant DataGridModel::data(const QModelIndex& index, int role) const
{
    if (!m_data || !index.isValid())
        return {};
    const bool include = index.column() == kIncludeColumn;
    switch (role) {
    case Qt::DisplayRole:
        return TextAt(index);
    case Qt::TextAlignmentRole:
        return QVariant::fromValue(include ? Qt::AlignCenter : Qt::AlignRight | Qt::AlignVCenter);
    case Qt::ToolTipRole:
        return include ? IncludeHint(index.row() + 1) : FullValue(index); // the format may hide decimals
    case Qt::AccessibleTextRole:
        return include ? IncludeHint(index.row() + 1) : TextAt(index);
    case Qt::BackgroundRole: // the first two columns are titles of the rows
        return index.column() < FirstDataCol ? QVariant(QGuiApplication::palette().button()) : QVariant();
    case Qt::ForegroundRole:
        return index.column() < FirstDataCol ? QVariant(QGuiApplication::palette().buttonText()) : QVariant();
    default:
        return {};
    }
}

QVariant DataGridModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return {};
    if (section == kTimeColumn)
        return Words(1877);
    if (section == kIncludeColumn)
        return Words(1878);
    return Words(kFirstTitle + DataColOf(section) - columns::kFirst);
}
