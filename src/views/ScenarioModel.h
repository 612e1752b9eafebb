// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "data/ScenarioSheet.h"

#include <QAbstractTableModel>

/// A ScenarioSheet as Qt's tables read it, cell by cell: row and column are those of the sheet. The time
/// labels of column 0 are the vertical header as well.
class ScenarioModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    /// `sheet` must outlive the model.
    explicit ScenarioModel(ScenarioSheet& sheet, QObject* parent = nullptr);

    /// The sheet has changed, perhaps in its size.
    void Refresh();

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role) override;

private:
    ScenarioSheet& m_sheet;
    int m_rows = 0; ///< as the views were told
    int m_columns = 0;
};
