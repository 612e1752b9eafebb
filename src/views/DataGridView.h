// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "views/DataGridModel.h"

#include <QFrame>

class GridWidget;
class QTableView;

/// The table of the main window: the time label and the Include boxes stay in view while the data columns
/// scroll. Two views stand side by side over one model and one selection.
class DataGridView : public QFrame
{
    Q_OBJECT

public:
    explicit DataGridView(QWidget* parent = nullptr);

    /// Brings the table into step with `sheet` and selects the first data cell; null shows nothing. The sheet
    /// must outlive the view or be replaced.
    void Show(const TableSheet* sheet);
    /// Brings the table into step with its sheet; the selected cell stays where it is still there.
    void Refresh();

    void EditMode(bool on);
    /// Lights up a row of the sheet and brings it into view; 0 for none.
    void Highlight(int row);

    const DataGridModel& Model() const { return m_model; }
    GridWidget& Grid() const { return *m_scrolling; }

signals:
    /// The current cell's stored value in full precision; empty when it is no data cell.
    void CellValue(const QString& value);
    /// The user wants to take this row of the sheet into the fit or out of it.
    void ToggleAsked(int row);

protected:
    void changeEvent(QEvent* event) override;

private:
    void SetUp(QTableView& view, const char* name);
    void SetUpFixed();
    void Link();
    void SizeColumns();
    int WidthOf(int column) const;
    void ShowTint();
    void TellCellValue();

    DataGridModel m_model;
    const TableSheet* m_sheet = nullptr;
    bool m_editMode = false;
    QTableView* m_fixed;
    GridWidget* m_scrolling;
    QWidget* m_underFixed; ///< as high as the other view's scroll bar, so that the rows end alike
};
