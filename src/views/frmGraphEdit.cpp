// SPDX-License-Identifier: GPL-3.0-or-later
#include "views/frmGraphEdit.h"

#include "base/NumberText.h"
#include "toolkit/Words.h"

#include <QCheckBox>
#include <QColorDialog>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPainter>
#include <QPushButton>
#include <QScrollArea>
#include <QVBoxLayout>
#include <qcustomplot.h>

#include <utility>

namespace
{
constexpr int kEditGraph = 1950;

// In the order of their enumerations.
QStringList SymbolNames()
{
    return {frmGraphEdit::tr("None"),
            frmGraphEdit::tr("Circle"),
            frmGraphEdit::tr("Circle, filled"),
            frmGraphEdit::tr("Square"),
            frmGraphEdit::tr("Square, filled"),
            frmGraphEdit::tr("Triangle"),
            frmGraphEdit::tr("Triangle, filled"),
            frmGraphEdit::tr("Diamond"),
            frmGraphEdit::tr("Diamond, filled"),
            frmGraphEdit::tr("Cross"),
            frmGraphEdit::tr("Plus")};
}

QStringList LineNames()
{
    return {frmGraphEdit::tr("None"), frmGraphEdit::tr("Solid"), frmGraphEdit::tr("Dashed"),
            frmGraphEdit::tr("Dotted"), frmGraphEdit::tr("Dash-dot")};
}

/// The first entry leaves the choice to the drawing.
QComboBox* NewChoice(const QStringList& names, const QString& what)
{
    auto* box = new QComboBox;
    box->addItem(frmGraphEdit::tr("As drawn"));
    box->addItems(names);
    box->setAccessibleName(what);
    return box;
}

template <typename Kind>
void Show(QComboBox& box, const std::optional<Kind>& kind)
{
    box.setCurrentIndex(kind ? static_cast<int>(*kind) + 1 : 0);
}

template <typename Kind>
std::optional<Kind> ChosenIn(const QComboBox& box)
{
    if (box.currentIndex() < 1)
        return std::nullopt;
    return static_cast<Kind>(box.currentIndex() - 1);
}

QString NumberOf(double value)
{
    return QString::fromStdString(number_text::Plain(value));
}

/// With so many digits as are of use to a reader who wants to change the number.
QString RoundNumberOf(double value)
{
    return NumberOf(QString::number(value, 'g', 6).toDouble());
}
} // namespace

frmGraphEdit::frmGraphEdit(Plain plain, const GraphEdit& now, QWidget* parent)
    : QDialog(parent), m_plain(std::move(plain)), m_chooseColour([this](const QColor& colour) {
          return QColorDialog::getColor(colour, this, tr("Colour"));
      })
{
    setObjectName(QStringLiteral("frmGraphEdit"));
    setWindowTitle(Words(kEditGraph));
    auto* column = new QVBoxLayout(this);
    column->addWidget(AddTitles());
    column->addWidget(AddRanges());
    if (!m_plain.surface) {
        column->addWidget(AddSwitches());
        if (!m_plain.series.empty())
            column->addWidget(AddSeries(), 1);
    }
    m_refusal = new QLabel;
    m_refusal->setObjectName(QStringLiteral("lblRefusal"));
    m_refusal->setTextFormat(Qt::PlainText);
    m_refusal->setWordWrap(true);
    m_refusal->setAccessibleName(tr("What is wrong with an entry"));
    m_refusal->hide();
    column->addWidget(m_refusal);
    AddButtons();
    m_unseen = now.look.series;
    for (const plot_look::Series& series : m_plain.series)
        m_unseen.erase(series.name.toStdString());
    Fill(now);
    m_title->setFocus();
    m_title->selectAll();
}

QWidget* frmGraphEdit::AddTitles()
{
    constexpr int kWide = 46; // characters
    auto* box = new QGroupBox(tr("Titles"));
    auto* form = new QFormLayout(box);
    const auto add = [&](const QString& caption, const char* name) {
        auto* line = new QLineEdit;
        line->setObjectName(QString::fromLatin1(name));
        line->setMinimumWidth(kWide * fontMetrics().averageCharWidth());
        form->addRow(caption, line);
        return line;
    };
    m_title = add(tr("&Title:"), "txtTitle");
    m_xTitle = add(tr("Along the &bottom:"), "txtXTitle");
    m_yTitle = add(tr("Along the &left:"), "txtYTitle");
    return box;
}

QWidget* frmGraphEdit::AddRanges()
{
    auto* box = new QGroupBox(tr("Ranges"));
    auto* form = new QFormLayout(box);
    m_x = AddRange(*form, tr("Along the bottom:"), "X");
    m_y = AddRange(*form, tr("Along the left:"), "Y");
    return box;
}

frmGraphEdit::Range frmGraphEdit::AddRange(QFormLayout& form, const QString& caption, const char* name)
{
    constexpr int kDigits = 14;
    const QString end = QString::fromLatin1(name);
    auto* row = new QHBoxLayout;
    Range range{.automatic = new QCheckBox(tr("Automatic")), .low = new QLineEdit, .high = new QLineEdit};
    range.automatic->setObjectName("chkAutomatic" + end);
    range.automatic->setAccessibleName(caption + ' ' + tr("automatic range"));
    range.low->setObjectName("txtLow" + end);
    range.low->setAccessibleName(caption + ' ' + tr("lower end"));
    range.high->setObjectName("txtHigh" + end);
    range.high->setAccessibleName(caption + ' ' + tr("upper end"));
    row->addWidget(range.automatic);
    row->addSpacing(fontMetrics().height());
    row->addWidget(new QLabel(tr("from")));
    row->addWidget(range.low);
    row->addWidget(new QLabel(tr("to")));
    row->addWidget(range.high);
    for (QLineEdit* line : {range.low, range.high}) {
        line->setMinimumWidth(kDigits * fontMetrics().horizontalAdvance('0'));
        connect(range.automatic, &QCheckBox::toggled, line, &QLineEdit::setDisabled);
    }
    form.addRow(caption, row);
    return range;
}

QWidget* frmGraphEdit::AddSwitches()
{
    auto* box = new QGroupBox(tr("Show"));
    auto* row = new QHBoxLayout(box);
    m_legend = new QCheckBox(tr("Le&gend"));
    m_legend->setObjectName(QStringLiteral("chkLegend"));
    m_grid = new QCheckBox(tr("Grid li&nes"));
    m_grid->setObjectName(QStringLiteral("chkGrid"));
    row->addWidget(m_legend);
    row->addWidget(m_grid);
    row->addStretch(1);
    return box;
}

QWidget* frmGraphEdit::AddSeries()
{
    constexpr int kRowsInSight = 6;
    auto* box = new QGroupBox(tr("Lines and symbols"));
    auto* inside = new QWidget;
    auto* grid = new QGridLayout(inside);
    int column = 0;
    for (const QString& head : {tr("Series"), tr("Colour"), tr("Symbol"), tr("Line")})
        grid->addWidget(new QLabel(head), 0, column++);
    for (std::size_t i = 0; i < m_plain.series.size(); ++i) {
        const SeriesRow& made = m_series.emplace_back(AddSeriesRow(i));
        const int row = static_cast<int>(i) + 1;
        grid->addWidget(new QLabel(m_plain.series[i].name), row, 0);
        grid->addWidget(made.colour, row, 1);
        grid->addWidget(made.symbol, row, 2);
        grid->addWidget(made.line, row, 3);
    }
    grid->setRowStretch(static_cast<int>(m_plain.series.size()) + 1, 1);
    auto* area = new QScrollArea; // a projection may have 26 lines
    area->setWidgetResizable(true);
    area->setFrameShape(QFrame::NoFrame);
    area->setWidget(inside);
    const int rows = std::min(kRowsInSight, static_cast<int>(m_plain.series.size()) + 1);
    area->setMinimumHeight(rows * (m_series.front().symbol->sizeHint().height() + grid->verticalSpacing()) +
                           inside->fontMetrics().height());
    area->setMinimumWidth(inside->sizeHint().width() + 2 * fontMetrics().height());
    auto* column1 = new QVBoxLayout(box);
    column1->setContentsMargins(0, 0, 0, 0);
    column1->addWidget(area);
    return box;
}

frmGraphEdit::SeriesRow frmGraphEdit::AddSeriesRow(std::size_t row)
{
    const plot_look::Series& series = m_plain.series[row];
    const QString number = QString::number(row + 1);
    SeriesRow made{.colour = new QPushButton,
                   .chosen = {},
                   .symbol = NewChoice(SymbolNames(), tr("Symbol of %1").arg(series.name)),
                   .line = NewChoice(LineNames(), tr("Line of %1").arg(series.name))};
    made.colour->setObjectName("cmdColour" + number);
    made.colour->setAccessibleName(tr("Colour of %1").arg(series.name));
    made.symbol->setObjectName("cmbSymbol" + number);
    made.symbol->setEnabled(series.takesSymbol);
    made.line->setObjectName("cmbLine" + number);
    made.line->setEnabled(series.takesLine);
    connect(made.colour, &QPushButton::clicked, this, [this, row] { ChooseColour(row); });
    return made;
}

void frmGraphEdit::AddButtons()
{
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel |
                                             QDialogButtonBox::Apply | QDialogButtonBox::RestoreDefaults,
                                         this);
    buttons->button(QDialogButtonBox::Ok)->setObjectName(QStringLiteral("cmdOK"));
    buttons->button(QDialogButtonBox::Ok)->setDefault(true);
    buttons->button(QDialogButtonBox::Cancel)->setObjectName(QStringLiteral("cmdCancel"));
    buttons->button(QDialogButtonBox::Apply)->setText(tr("&Apply"));
    buttons->button(QDialogButtonBox::RestoreDefaults)->setText(tr("Restore &Defaults"));
    buttons->button(QDialogButtonBox::Apply)->setObjectName(QStringLiteral("cmdApply"));
    buttons->button(QDialogButtonBox::RestoreDefaults)->setObjectName(QStringLiteral("cmdDefaults"));
    connect(buttons, &QDialogButtonBox::accepted, this, &frmGraphEdit::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &frmGraphEdit::reject);
    connect(buttons->button(QDialogButtonBox::Apply), &QPushButton::clicked, this, &frmGraphEdit::Apply);
    connect(buttons->button(QDialogButtonBox::RestoreDefaults), &QPushButton::clicked, this,
            &frmGraphEdit::RestoreDefaults);
    layout()->addWidget(buttons);
}

void frmGraphEdit::ChooseColour(std::size_t row)
{
    SeriesRow& series = m_series[row];
    const QColor now = series.chosen.isValid() ? series.chosen : m_plain.series[row].colour;
    const QColor colour = m_chooseColour(now);
    if (!colour.isValid())
        return;
    series.chosen = colour;
    ShowColour(row);
}

void frmGraphEdit::ShowColour(std::size_t row)
{
    const SeriesRow& series = m_series[row];
    const QColor colour = series.chosen.isValid() ? series.chosen : m_plain.series[row].colour;
    QPixmap swatch(2 * fontMetrics().height(), fontMetrics().height());
    swatch.fill(QColor(colour.rgb()));
    series.colour->setIcon(swatch);
    series.colour->setIconSize(swatch.size());
    series.colour->setText(series.chosen.isValid() ? colour.name().toUpper() : tr("As drawn"));
}

void frmGraphEdit::Fill(const GraphEdit& edit)
{
    const GraphLook& look = edit.look;
    m_title->setText(QString::fromStdString(edit.title));
    m_xTitle->setText(look.xTitle ? QString::fromStdString(*look.xTitle) : m_plain.xTitle);
    m_yTitle->setText(look.yTitle ? QString::fromStdString(*look.yTitle) : m_plain.yTitle);
    const auto fill = [](const Range& range, const std::optional<AxisSpan>& chosen, const AxisSpan& plain) {
        range.low->setText(chosen ? NumberOf(chosen->low) : RoundNumberOf(plain.low));
        range.high->setText(chosen ? NumberOf(chosen->high) : RoundNumberOf(plain.high));
        range.automatic->setChecked(!chosen);
    };
    fill(m_x, look.x, m_plain.x);
    fill(m_y, look.y, m_plain.y);
    if (m_plain.surface)
        return;
    m_legend->setChecked(look.legend);
    m_grid->setChecked(look.grid);
    for (std::size_t i = 0; i < m_series.size(); ++i) {
        const auto found = look.series.find(m_plain.series[i].name.toStdString());
        const SeriesLook series = found == look.series.end() ? SeriesLook{} : found->second;
        m_series[i].chosen = series.colour ? QColor::fromRgb(*series.colour) : QColor();
        ShowColour(i);
        Show(*m_series[i].symbol, series.symbol);
        Show(*m_series[i].line, series.line);
    }
}

void frmGraphEdit::RestoreDefaults()
{
    m_refusal->hide();
    m_unseen.clear();
    Fill({.title = m_plain.title, .look = {}});
}

bool frmGraphEdit::Refuse(QLineEdit* box, const QString& why)
{
    m_refusal->setText(why);
    m_refusal->show();
    box->setFocus();
    box->selectAll();
    return false;
}

bool frmGraphEdit::ReadRange(const Range& range, std::optional<AxisSpan>& span)
{
    span.reset();
    if (range.automatic->isChecked())
        return true;
    const auto low = number_text::ParseTyped(range.low->text().toStdString());
    if (!low)
        return Refuse(range.low, tr("The lower end of a range must be a number, as 0 or 1.5E6."));
    const auto high = number_text::ParseTyped(range.high->text().toStdString());
    if (!high)
        return Refuse(range.high, tr("The upper end of a range must be a number, as 0 or 1.5E6."));
    if (!(*low < *high))
        return Refuse(range.high, tr("The upper end of a range must be above its lower end."));
    if (!QCPRange::validRange(*low, *high))
        return Refuse(range.high, tr("No axis can be drawn from %1 to %2: the ends are too close or too far "
                                     "apart.")
                                      .arg(NumberOf(*low), NumberOf(*high)));
    span = AxisSpan{.low = *low, .high = *high};
    return true;
}

bool frmGraphEdit::Read(GraphEdit& edit)
{
    const auto edited = [](const QLineEdit& box, const QString& plain) {
        return box.text() == plain ? std::nullopt : std::make_optional(box.text().toStdString());
    };
    edit.title = m_title->text().trimmed().toStdString();
    if (edit.title.empty())
        return Refuse(m_title, tr("A graph needs a title: the Graph menu lists it by that."));
    GraphLook& look = edit.look;
    look.xTitle = edited(*m_xTitle, m_plain.xTitle);
    look.yTitle = edited(*m_yTitle, m_plain.yTitle);
    if (!ReadRange(m_x, look.x) || !ReadRange(m_y, look.y))
        return false;
    if (m_plain.surface)
        return true;
    look.legend = m_legend->isChecked();
    look.grid = m_grid->isChecked();
    look.series = m_unseen;
    for (std::size_t i = 0; i < m_series.size(); ++i) {
        SeriesLook series{.colour = std::nullopt,
                          .symbol = ChosenIn<SymbolShape>(*m_series[i].symbol),
                          .line = ChosenIn<LineKind>(*m_series[i].line)};
        if (m_series[i].chosen.isValid())
            series.colour = m_series[i].chosen.rgb() & 0xFFFFFFU;
        if (series != SeriesLook{})
            look.series[m_plain.series[i].name.toStdString()] = series;
    }
    return true;
}

bool frmGraphEdit::Apply()
{
    GraphEdit edit;
    if (!Read(edit))
        return false;
    m_refusal->hide();
    if (m_apply)
        m_apply(edit);
    return true;
}

void frmGraphEdit::accept()
{
    if (Apply())
        QDialog::accept();
}
