// SPDX-License-Identifier: GPL-3.0-or-later
#include "dialogs/frmASCIIWizard.h"

#include "base/HelpTopics.h"
#include "base/NumberText.h"
#include "base/VeltError.h"
#include "toolkit/Words.h"

#include <QAbstractTableModel>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QItemSelectionModel>
#include <QLabel>
#include <QPushButton>
#include <QSignalBlocker>
#include <QTableView>
#include <QVBoxLayout>
#include <vector>

namespace
{
// Of the window at the start, in average characters and in lines.
constexpr int kWide = 96;
constexpr int kHigh = 30;
constexpr int kLongestTitle = 18; // characters

constexpr int kHelp = 1955;

/// Widgets side by side, of which the one at `stretched` takes the room that is left.
QWidget* Row(const std::vector<QWidget*>& widgets, int stretched)
{
    auto* row = new QWidget;
    auto* layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    for (QWidget* widget : widgets)
        layout->addWidget(widget);
    layout->setStretch(stretched, 1);
    return row;
}
} // namespace

/// The text columns of the record as a table: all values, and above them the heading with the data column
/// that was assigned to it.
class TextColumnsModel : public QAbstractTableModel
{
public:
    TextColumnsModel(const AsciiWizard& wizard, QObject* parent)
        : QAbstractTableModel(parent), m_wizard(wizard)
    {
    }

    int rowCount(const QModelIndex& = {}) const override
    {
        return m_wizard.collFlexData.empty() ? 0 : static_cast<int>(m_wizard.collFlexData.front().size());
    }
    int columnCount(const QModelIndex& = {}) const override { return m_wizard.TextColumns(); }

    QVariant data(const QModelIndex& index, int role) const override
    {
        if (role == Qt::TextAlignmentRole)
            return QVariant(Qt::AlignRight | Qt::AlignVCenter);
        if (role != Qt::DisplayRole)
            return {};
        const auto& column = m_wizard.collFlexData[static_cast<std::size_t>(index.column())];
        return QString::fromStdString(number_text::Plain(column[static_cast<std::size_t>(index.row())]));
    }

    QVariant headerData(int section, Qt::Orientation orientation, int role) const override
    {
        if (role != Qt::DisplayRole || orientation == Qt::Vertical)
            return QAbstractTableModel::headerData(section, orientation, role);
        const std::string& heading = m_wizard.collFlexHeadings[static_cast<std::size_t>(section)];
        const int assigned = m_wizard.enuUserColRef(section + 1);
        // A second line also where nothing is assigned, so that the table does not jump.
        return QString::fromStdString(
            heading + "\n" + (assigned == AsciiWizard::kNone ? " " : m_wizard.ChoiceTitle(assigned)));
    }

    void HeadingsChanged() { emit headerDataChanged(Qt::Horizontal, 0, columnCount() - 1); }

private:
    const AsciiWizard& m_wizard;
};

frmASCIIWizard::frmASCIIWizard(IUser& user, const AsciiWizard& wizard, QWidget* parent)
    : QDialog(parent), m_user(user), m_wizard(wizard), m_model(new TextColumnsModel(m_wizard, this)),
      m_step(new QGroupBox), m_explanation(new QLabel), m_table(new QTableView), m_choices(new QComboBox),
      m_back(new QPushButton(Words(207))), m_next(new QPushButton(Words(208))),
      m_finish(new QPushButton(Words(209)))
{
    setObjectName("frmASCIIWizard");
    m_table->setObjectName("grdText");
    m_table->setModel(m_model);
    m_table->setSelectionBehavior(QAbstractItemView::SelectColumns);
    m_table->setSelectionMode(QAbstractItemView::SingleSelection);
    m_table->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_table->setTabKeyNavigation(false); // Tab leaves the table, the arrows move in it
    m_table->resizeColumnsToContents();
    m_explanation->setObjectName("lblMsg");
    m_explanation->setWordWrap(true);

    auto* inner = new QVBoxLayout(m_step);
    inner->addWidget(m_explanation);
    inner->addWidget(FileRow());
    inner->addWidget(m_table, 1);
    inner->addWidget(ChoiceRow());
    auto* outer = new QVBoxLayout(this);
    outer->addWidget(m_step, 1);
    outer->addWidget(ButtonRow());

    connect(m_table->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &frmASCIIWizard::OnColumnSelected);
    connect(m_choices, &QComboBox::activated, this, &frmASCIIWizard::OnChoice);
    resize(fontMetrics().averageCharWidth() * kWide, fontMetrics().lineSpacing() * kHigh);
    m_table->setFocus();
    Preselect();
    ShowStep();
}

frmASCIIWizard::~frmASCIIWizard()
{
    m_table->setModel(
        nullptr); // a form destroyed while it shows lays its table out once more, without the record
}

bool frmASCIIWizard::Ask(IUser& user, AsciiWizard& wizard, QWidget* parent)
{
    frmASCIIWizard form(user, wizard, parent);
    const bool finished = form.exec() == QDialog::Accepted;
    if (form.m_failure)
        std::rethrow_exception(form.m_failure); // not through the event loop, but from here
    if (finished)
        wizard = form.m_wizard;
    return finished;
}

QWidget* frmASCIIWizard::FileRow() const
{
    auto* fileName = new QLabel(QString::fromStdString(m_wizard.fileName));
    fileName->setObjectName("lblFile");
    fileName->setTextInteractionFlags(Qt::TextSelectableByMouse);
    fileName->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred); // a long path widens no window
    fileName->setToolTip(fileName->text());
    return Row({new QLabel(Words(213)), fileName}, 1);
}

QWidget* frmASCIIWizard::ChoiceRow()
{
    auto* label = new QLabel(Words(212));
    label->setBuddy(m_choices);
    m_choices->setObjectName("cboDBCols");
    m_choices->setSizeAdjustPolicy(QComboBox::AdjustToContents);
    m_choices->setMinimumContentsLength(kLongestTitle);
    return Row({label, m_choices, new QWidget}, 2);
}

QWidget* frmASCIIWizard::ButtonRow()
{
    auto* buttons = new QDialogButtonBox;
    m_back->setObjectName("cmdBack");
    m_next->setObjectName("cmdNext");
    m_finish->setObjectName("cmdFinish");
    // One role for the three, so that no system's order tears Back, Next and Finish apart.
    for (QPushButton* button : {m_back, m_next, m_finish})
        buttons->addButton(button, QDialogButtonBox::ActionRole);
    buttons->addButton(Words(206), QDialogButtonBox::RejectRole)->setObjectName("cmdCancel");
    QPushButton* help = buttons->addButton(Words(kHelp), QDialogButtonBox::HelpRole);
    help->setObjectName("cmdHelp");
    connect(help, &QPushButton::clicked, this, [this] { m_user.ShowHelp(help_topics::kImportWizard); });
    connect(m_back, &QPushButton::clicked, this, &frmASCIIWizard::OnBack);
    connect(m_next, &QPushButton::clicked, this, &frmASCIIWizard::OnNext);
    connect(m_finish, &QPushButton::clicked, this, &frmASCIIWizard::OnFinish);
    connect(buttons, &QDialogButtonBox::rejected, this, &frmASCIIWizard::reject);
    return buttons;
}

int frmASCIIWizard::SelectedColumn() const
{
    const QItemSelection selected = m_table->selectionModel()->selection();
    return selected.isEmpty() ? 0 : selected.front().left() + 1;
}

void frmASCIIWizard::Preselect()
{
    m_wizard.GuessTiming();
    if (m_wizard.timingColumn != 0)
        m_table->setCurrentIndex(m_model->index(0, m_wizard.timingColumn - 1)); // scrolls to it
}

void frmASCIIWizard::OnColumnSelected()
{
    if (m_wizard.step == 1 && SelectedColumn() != 0)
        m_wizard.ChooseTiming(SelectedColumn());
    ShowStep();
}

void frmASCIIWizard::OnChoice(int row)
{
    m_wizard.Assign(SelectedColumn(), m_choices->itemData(row).toInt());
    ShowStep();
    m_table->resizeColumnToContents(SelectedColumn() - 1); // the title may be wider than the values
}

void frmASCIIWizard::OnBack()
{
    m_wizard.Back();
    m_table->setColumnHidden(m_wizard.timingColumn - 1, false);
    m_table->selectColumn(m_wizard.timingColumn - 1);
    ShowStep();
}

void frmASCIIWizard::OnNext()
{
    try {
        m_wizard.Next();
        m_wizard.GuessColumns();
    } catch (const VeltError&) {
        m_failure = std::current_exception();
        reject();
        return;
    }
    m_table->setColumnHidden(m_wizard.timingColumn - 1, true);
    m_table->clearSelection();
    SelectFirstColumn();
    ShowStep();
    m_table->resizeColumnsToContents(); // titles that were guessed may be wider than the values
    m_table->setFocus();
}

void frmASCIIWizard::OnFinish()
{
    m_wizard.Finish();
    accept();
}

void frmASCIIWizard::SelectFirstColumn()
{
    const int first = m_wizard.timingColumn == 1 ? 1 : 0;
    if (first < m_model->columnCount())
        m_table->setCurrentIndex(m_model->index(0, first));
}

/// Puts the record's state on the screen; a function of the record and of the selected column alone.
void frmASCIIWizard::ShowStep()
{
    setWindowTitle(QString::fromStdString(m_wizard.Caption()));
    m_step->setTitle(QString::fromStdString(m_wizard.StepTitle()));
    m_explanation->setText(QString::fromStdString(m_wizard.Explanation()));
    m_back->setEnabled(m_wizard.CanBack());
    m_next->setEnabled(m_wizard.CanNext());
    m_finish->setEnabled(m_wizard.CanFinish());
    (m_wizard.step == 1 ? m_next : m_finish)->setDefault(true);
    m_model->HeadingsChanged();
    m_table->horizontalHeader()->setMinimumHeight(m_table->horizontalHeader()->sizeHint().height());
    ShowChoices();
}

void frmASCIIWizard::ShowChoices()
{
    const QSignalBlocker quiet(m_choices);
    m_choices->clear();
    const int column = SelectedColumn();
    const bool assignable = m_wizard.step == 2 && column != 0 && column != m_wizard.timingColumn;
    m_choices->setEnabled(assignable);
    if (!assignable)
        return;
    for (const int choice : m_wizard.Choices(column))
        m_choices->addItem(QString::fromStdString(m_wizard.ChoiceTitle(choice)), choice);
    m_choices->setCurrentIndex(m_choices->findData(m_wizard.enuUserColRef(column)));
}
