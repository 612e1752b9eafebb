// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/Ports.h"
#include "files/AsciiWizard.h"

#include <QDialog>
#include <exception>

class QComboBox;
class QGroupBox;
class QLabel;
class QPushButton;
class QTableView;
class TextColumnsModel;

/// The two steps of a text import over the rules of the record: which text column holds the periods, and
/// which data column each of the others becomes. What can be guessed is chosen already; it can be changed as
/// what a person chose. It edits its own copy of the record.
class frmASCIIWizard : public QDialog
{
    Q_OBJECT

public:
    /// `user` opens the manual and must outlive the dialog.
    frmASCIIWizard(IUser& user, const AsciiWizard& wizard, QWidget* parent = nullptr);
    ~frmASCIIWizard() override;
    Q_DISABLE_COPY_MOVE(frmASCIIWizard)

    /// Runs the dialog. \return true after Finish, with `wizard` changed
    /// \throws VeltError a time label that is no period ends the import, as the record raised it
    static bool Ask(IUser& user, AsciiWizard& wizard, QWidget* parent);

    const AsciiWizard& Record() const { return m_wizard; }

private:
    QWidget* FileRow() const;
    QWidget* ChoiceRow();
    QWidget* ButtonRow();
    void Preselect();
    void OnColumnSelected();
    void OnChoice(int row);
    void OnBack();
    void OnNext();
    void OnFinish();
    void SelectFirstColumn();
    void ShowStep();
    void ShowChoices();
    int SelectedColumn() const; ///< text column, counted from 1; 0 for none

    IUser& m_user;
    AsciiWizard m_wizard;
    std::exception_ptr m_failure; ///< why the import cannot go on
    TextColumnsModel* m_model;
    QGroupBox* m_step;
    QLabel* m_explanation;
    QTableView* m_table;
    QComboBox* m_choices;
    QPushButton* m_back;
    QPushButton* m_next;
    QPushButton* m_finish;
};
