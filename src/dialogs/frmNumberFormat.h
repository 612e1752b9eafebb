// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "data/NumberFormat.h"
#include "dialogs/FormDialog.h"

class QLabel;
class QListWidget;

/// Chooses a number format by category and decimal places, and shows a value in it.
class frmNumberFormat : public FormDialog
{
    Q_OBJECT

public:
    frmNumberFormat(IUser& user, const NumberFormatChoice& choice, QWidget* parent);

    NumberFormatChoice Choice() const;

    /// \return true for OK, `choice` then holds what was chosen
    static bool Ask(IUser& user, NumberFormatChoice& choice, QWidget* parent);

private:
    void ShowSample();

    float m_sample;
    QListWidget* m_lstFormat;
    QListWidget* m_lstDecPlaces;
    QLabel* m_lblSample;
};
