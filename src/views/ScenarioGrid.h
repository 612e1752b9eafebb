// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "views/ScenarioModel.h"

#include <QFrame>

class GridWidget;
class QComboBox;
class QTableView;

/// The grid of the scenario editor: titles and units stay in view above the values while these scroll, the
/// time labels beside them. Two tables stand one above the other over one model and one selection; the
/// keyboard is always with the lower one. A list of units lies over the unit of the current scenario.
class ScenarioGrid : public QFrame
{
    Q_OBJECT

public:
    /// `sheet` must outlive the grid.
    explicit ScenarioGrid(ScenarioSheet& sheet, QWidget* parent = nullptr);

    GridWidget& Cells() const { return *m_cells; }
    QComboBox& Units() const { return *m_units; }
    /// Brings the grid into step with its sheet; the selected cell stays.
    void Refresh();
    /// Opens the list of units of the current scenario.
    void OpenUnits();

signals:
    /// The user picked this unit, by its place in the list, for the scenario of this column.
    void UnitPicked(int col, int unit);

protected:
    void resizeEvent(QResizeEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void BuildHeads();
    void BuildUnits();
    void LayOut();
    void SizeAndHide();
    void PlaceUnits();

    ScenarioSheet& m_sheet;
    ScenarioModel m_model;
    QTableView* m_heads;
    GridWidget* m_cells;
    QComboBox* m_units;
};
