// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "dialogs/FormDialog.h"

#include <string>
#include <vector>

/// A column of the data set with the unit of its numbers.
struct ColumnUnit {
    int column = 0;
    std::string title;
    std::string unit; ///< empty for none
};

/// Asks for the units of columns, as they shall stand on the axes of graphs.
class frmColumnUnits : public FormDialog
{
    Q_OBJECT

public:
    static constexpr int kMostCharacters = 30;

    frmColumnUnits(IUser& user, std::vector<ColumnUnit> rows, QWidget* parent);

    const std::vector<ColumnUnit>& Rows() const { return m_rows; }

    /// \return true for OK, `rows` then hold the units
    static bool Ask(IUser& user, std::vector<ColumnUnit>& rows, QWidget* parent);

private:
    std::vector<ColumnUnit> m_rows;
};
