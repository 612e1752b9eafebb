// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "data/TableSheet.h"

#include <QAbstractTableModel>

/// A TableSheet as Qt's tables read it: the time label, the box that takes the period into the fit, then the
/// present columns. Row r of the sheet is row r - 1 here, the sheet's titles are the header.
class DataGridModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    using QAbstractTableModel::QAbstractTableModel;

    /// Shows `sheet`, which must outlive the model or be replaced; null shows nothing.
    void Show(const TableSheet* sheet);
    /// The sheet has changed; its size, when `sameSize`, has not.
    void Refresh(bool sameSize);
    /// While data are edited the boxes cannot be clicked.
    void EditMode(bool on) { m_editMode = on; }
    /// Lights up a row of the sheet; 0 for none.
    void Highlight(int row);

    /// The stored value of a data cell in full precision; empty elsewhere.
    QString FullValue(const QModelIndex& index) const;
    /// Whether there is a box in this row of the sheet that can be clicked.
    bool BoxEnabled(int row) const;

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;
    /// The text of a cell follows from the sheet: says that it has changed, and stores nothing.
    bool setData(const QModelIndex& index, const QVariant& value, int role) override;

private:
    QVariant IncludeData(int row, int role) const;
    QVariant Look(const QModelIndex& index, int role) const;
    QString IncludeHint(int row) const;

    const TableSheet* m_sheet = nullptr;
    int m_rows = 0; ///< as the views were told
    int m_columns = 0;
    bool m_editMode = false;
    int m_highlight = 0;
};
