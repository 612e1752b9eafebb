// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "data/clsVeltData.h"

#include <QWidget>

class QLabel;
class QPushButton;
class QTableWidget;

/// The logged fits of the project, one row each, and the buttons that load, delete and add one. It does
/// nothing by itself; its close box and OK hide it.
class frmFitManager : public QWidget
{
    Q_OBJECT

public:
    /// Which of its commands can be given.
    struct Offers {
        bool add = false;
        bool loadAndDelete = false;
    };

    explicit frmFitManager(QWidget* parent);

    /// Lists the fits of `data` anew; the current row stays where it can.
    void Restore(const clsVeltData& data, const Offers& offers);

signals:
    void LoadAsked(const QString& name); ///< without the blanks around it
    void DeleteAsked(int place);         ///< in the order of the list, from 1
    void AddAsked();
    void HelpAsked();

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    void BuildButtons();
    QString CurrentName() const;

    QLabel* m_lblMsg;
    QTableWidget* m_grdFits;
    QPushButton* m_cmdLoad = nullptr;
    QPushButton* m_cmdDelete = nullptr;
    QPushButton* m_cmdAdd = nullptr;
};
