// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "graphs/GraphLook.h"
#include "views/PlotLook.h"

#include <QDialog>

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

class QAbstractButton;
class QCheckBox;
class QComboBox;
class QFormLayout;
class QLabel;
class QLineEdit;
class QPushButton;
class QVBoxLayout;

/// What of a graph can be edited: its title and its look.
struct GraphEdit {
    std::string title;
    GraphLook look;
    bool operator==(const GraphEdit&) const = default;
};

/// Edits title, axis titles, ranges, legend, grid lines, colours and symbols of one graph. Its Apply shows
/// what has been entered while the dialog stays; Cancel leaves the graph as it was last applied.
class frmGraphEdit : public QDialog
{
    Q_OBJECT

public:
    /// How the graph stands by itself, without any edit.
    struct Plain {
        std::string title;
        QString xTitle;
        QString yTitle;
        AxisSpan x;
        AxisSpan y;
        std::vector<plot_look::Series> series;
        bool surface = false; ///< has neither legend nor grid lines nor series to choose
    };

    frmGraphEdit(Plain plain, const GraphEdit& now, QWidget* parent);

    /// Called with what has been entered, by Apply and by OK.
    void AppliesBy(std::function<void(const GraphEdit&)> apply) { m_apply = std::move(apply); }
    /// Lets `choose` choose a colour in place of the system's dialog; an invalid colour is no choice.
    void ColourChosenBy(std::function<QColor(const QColor& now)> choose)
    {
        m_chooseColour = std::move(choose);
    }

public slots:
    void accept() override;
    /// Takes what has been entered. \return false when a range is refused; the focus is then on it
    bool Apply();
    /// Fills the form with the graph as it stands by itself; nothing is applied yet.
    void RestoreDefaults();

private:
    struct Range {
        QCheckBox* automatic = nullptr;
        QLineEdit* low = nullptr;
        QLineEdit* high = nullptr;
    };
    struct SeriesRow {
        QPushButton* colour = nullptr;
        QColor chosen; ///< invalid: as drawn
        QComboBox* symbol = nullptr;
        QComboBox* line = nullptr;
    };
    QWidget* AddTitles();
    QWidget* AddRanges();
    QWidget* AddSeries();
    QWidget* AddSwitches();
    void AddButtons();
    Range AddRange(QFormLayout& form, const QString& caption, const char* name);
    SeriesRow AddSeriesRow(std::size_t row);
    void ChooseColour(std::size_t row);
    void ShowColour(std::size_t row);
    void Fill(const GraphEdit& edit);
    bool Read(GraphEdit& edit);
    bool ReadRange(const Range& range, std::optional<AxisSpan>& span);
    bool Refuse(QLineEdit* box, const QString& why);

    Plain m_plain;
    QLineEdit* m_title = nullptr;
    QLineEdit* m_xTitle = nullptr;
    QLineEdit* m_yTitle = nullptr;
    Range m_x;
    Range m_y;
    QCheckBox* m_legend = nullptr;
    QCheckBox* m_grid = nullptr;
    std::vector<SeriesRow> m_series;
    std::map<std::string, SeriesLook> m_unseen; ///< of series that the graph does not show now
    QLabel* m_refusal = nullptr;
    std::function<void(const GraphEdit&)> m_apply;
    std::function<QColor(const QColor&)> m_chooseColour;
};
