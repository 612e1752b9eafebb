// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "fit/ParameterReport.h"

#include <QDialog>
#include <QString>

#include <vector>

class QGridLayout;
class QGroupBox;
class QLabel;
class QScrollArea;

/// The parameter report: model and fit above, then inputs, estimates, once there are bootstraps limits, and
/// remarks where there are any.
/// It shows texts and works nothing out.
class frmParams : public QDialog
{
    Q_OBJECT

public:
    explicit frmParams(QWidget* parent = nullptr);

    /// Rebuilds everything from `report` and shows the window, modeless.
    void Show(const ParameterReport& report);

signals:
    /// The button for confidence intervals was pressed.
    void confIntsRequested();
    /// The button for printing was pressed.
    void printRequested();
    /// The button for help was pressed.
    void helpRequested();

public slots:
    /// The whole report as text.
    void CopyReport();
    /// The selected part of one label.
    void CopySelection();

private:
    /// A frame with rows of names and values, filled from the first row on.
    struct Block {
        QGroupBox* frame = nullptr;
        QGridLayout* grid = nullptr;
        QString rowName;
        std::vector<QLabel*> names;
        std::vector<QLabel*> values;
    };

    QLabel* NewLabel(const QString& name, Qt::Alignment alignment);
    QGridLayout* NewHead();
    Block NewBlock(const QString& frameName, const QString& headingName, int headingText,
                   const QString& rowName);
    void AddRow(Block& block);
    void Fill(Block& block, const std::vector<ParameterReport::Row>& rows);
    void AddRemarks();
    void FillRemarks(const std::vector<std::string>& sentences);
    void AddButtons();
    void AddMenu();

    ParameterReport m_report;
    QLabel* m_lblMethName = nullptr;
    QLabel* m_lblFitOpName = nullptr;
    QLabel* m_lblR2 = nullptr;
    QLabel* m_lblCIRange = nullptr;
    Block m_inputs;
    Block m_estimates;
    Block m_intervals;
    QGroupBox* m_remarksFrame = nullptr;
    QScrollArea* m_remarksArea = nullptr; ///< so that many remarks do not push the buttons off a small screen
    std::vector<QLabel*> m_remarks;
};
