// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "data/clsVeltData.h"

#include <QAbstractTableModel>
#include <array>
#include <vector>

/// The data set as a table to look at: the time label, whether the period is in the fits, then the present
/// columns in their order. It changes nothing.
class DataGridModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    static constexpr int kTimeColumn = 0;
    static constexpr int kIncludeColumn = 1;
    static constexpr int FirstDataCol = 2;

    using QAbstractTableModel::QAbstractTableModel;

    /// Shows `data`, which must outlive the model or be replaced; null shows nothing.
    void Show(const clsVeltData* data);

    /// The data column (1 to 15) that grid column `column` shows; 0 for the first two.
    int DataColOf(int column) const;
    /// The grid column that shows data column `dataColumn`; 0 when it is absent.
    int GridColOf(int dataColumn) const { return m_gridColOf.at(static_cast<std::size_t>(dataColumn)); }

    /// The stored value of a data cell in full precision; empty elsewhere.
    QString FullValue(const QModelIndex& index) const;

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    QString TextAt(const QModelIndex& index) const;
    QString IncludeHint(int row) const;

    const clsVeltData* m_data = nullptr;
    std::vector<int> m_dataColOf; ///< by grid column less FirstDataCol
    std::array<int, columns::kLast + 1> m_gridColOf{};
};
