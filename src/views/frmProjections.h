// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "data/ScenarioSheet.h"
#include "data/clsDataGrid.h"

#include <QWidget>
#include <functional>

class QAction;
class QLabel;
class QMenu;
class ScenarioGrid;

/// The projection scenarios of the data set: titles, units and values are typed and pasted in one grid and go
/// into the data set at once. Its close box hides it.
class frmProjections : public QWidget, public ScenarioSheet::IWindow
{
    Q_OBJECT

public:
    /// Runs a command of this window as the main window runs its own; `name` says which.
    using Runner = std::function<void(const char* name, const std::function<void()>& command)>;

    /// `user` and `clipboard` must outlive the window.
    frmProjections(IUser& user, IClipboard& clipboard, QWidget* parent);
    ~frmProjections() override;
    frmProjections(const frmProjections&) = delete;
    frmProjections& operator=(const frmProjections&) = delete;
    void RunBy(Runner runner) { m_run = std::move(runner); }

    /// Shows the scenarios of `data`, which must outlive the window or be replaced; null shows nothing.
    void SetData(clsVeltData* data);
    /// Scenarios can be set up now, or not. Rows are loaded anew where the periods of the data have changed.
    void Follow(bool available);
    /// The title above the current cell.
    std::string ProjName() const;
    /// Stores what an open cell holds. \return false when it is refused, the cell then stays open
    bool MayLeaveCell() { return m_control.CommitIfOpen(); }

    // ScenarioSheet::IWindow
    IFlexGrid& FlexGrid() override;
    ITextBox& txtBox() override;
    ActiveControl Active() const override;
    void GridPopUpMenu() override;
    GridSelection Edited() const override;
    void Changed() override;
    void Note(const std::string& text) override;

signals:
    /// Scenarios, periods or values are others than before.
    void ScenariosChanged();

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    void BuildMenus();
    QAction* AddCommand(QMenu& menu, const char* name, int captionId, void (frmProjections::*command)());
    void ShowOffers();
    bool MayPaste() const;
    bool InsideValues() const;
    void GridKey(int key);
    void AddScenario();
    void DeleteScenario();
    void AddRow();
    void DeleteRow();
    void Copy() { m_control.CopyClick(); }
    void Paste();
    void Clear();
    void CloseWindow();
    void SelectFirst();

    Runner m_run;
    ScenarioSheet m_sheet;
    clsDataGrid m_control;
    clsVeltData* m_data = nullptr;
    ScenarioGrid* m_grid;
    QLabel* m_note;
    QMenu* m_mnuEdit = nullptr;
    QAction* m_mnuCopy = nullptr;
    QAction* m_mnuPaste = nullptr;
};
