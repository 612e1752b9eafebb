// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/Ports.h"
#include "dialogs/FormDialog.h"

class QListWidget;

/// One choice out of a list.
class SelectionDialog : public FormDialog
{
    Q_OBJECT

public:
    SelectionDialog(IUser& user, const Selection& selection, QWidget* parent);

    /// Position of the choice, from 1; 0 when nothing is chosen.
    std::size_t Chosen() const;

    /// \return true for OK, `selection.chosen` is then the choice
    static bool Ask(IUser& user, Selection& selection, QWidget* parent);

private:
    QListWidget* m_list;
};
