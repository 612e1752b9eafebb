// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "views/DataGridModel.h"

#include <QFrame>

class QTableView;

/// The table of the main window: the time label and the Include mark stay in view while the data columns
/// scroll. Two views stand side by side over one model and one selection.
class DataGridView : public QFrame
{
    Q_OBJECT

public:
    explicit DataGridView(QWidget* parent = nullptr);

    /// Brings the table into step with `data` and selects the first data cell.
    void Show(const clsVeltData* data);

    const DataGridModel& Model() const { return m_model; }
    QModelIndex Current() const;

signals:
    /// The current cell's stored value in full precision; empty when it is no data cell.
    void CellValue(const QString& value);

private:
    QTableView* AddView(const char* name);
    void Link();
    void SizeColumns();
    int WidthOf(int column) const;

    DataGridModel m_model;
    QTableView* m_fixed;
    QTableView* m_scrolling;
    QWidget* m_underFixed; ///< as high as the other view's scroll bar, so that the rows end alike
};
