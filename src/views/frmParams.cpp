// SPDX-License-Identifier: GPL-3.0-or-later
#include "views/frmParams.h"

#include "toolkit/Words.h"

#include <QAction>
#include <QClipboard>
#include <QDialogButtonBox>
#include <QFontMetrics>
#include <QGridLayout>
#include <QGroupBox>
#include <QGuiApplication>
#include <QLabel>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QStyle>
#include <QVBoxLayout>

namespace
{

constexpr int kModelText = 1869;
constexpr int kFitText = 1868;
constexpr int kRSqrText = 1865;
constexpr int kWindowText = 801;
constexpr int kInputsText = 802;
constexpr int kEstimatesText = 803;
constexpr int kIntervalsText = 804;
constexpr int kConfIntsText = 805;
constexpr int kPrintText = 806;
constexpr int kCloseText = 807;
constexpr int kHelpText = 1955;

QString Trimmed(const std::string& text)
{
    return QString::fromStdString(text).trimmed(); // some titles carry blanks for a fixed-width report
}

QFont Bold(QFont font)
{
    font.setBold(true);
    return font;
}

} // namespace

frmParams::frmParams(QWidget* parent) : QDialog(parent)
{
    setObjectName(QStringLiteral("frmParams"));
    setWindowTitle(Words(kWindowText));
    auto* column = new QVBoxLayout(this);
    column->addLayout(NewHead());
    m_inputs = NewBlock("picInput", "lblInput", kInputsText, "lblIP");
    m_estimates = NewBlock("picMP", "lblMethParams", kEstimatesText, "lblMP");
    m_intervals = NewBlock("picCI", "lblConfInts", kIntervalsText, "lblCI");
    m_lblCIRange = NewLabel("lblCIRange", Qt::AlignRight);
    m_intervals.grid->addWidget(m_lblCIRange, 0, 1);
    for (const Block& block : {m_inputs, m_estimates, m_intervals})
        column->addWidget(block.frame);
    AddRemarks();
    column->addWidget(m_remarksFrame);
    column->addStretch(1);
    AddButtons();
    column->setSizeConstraint(QLayout::SetFixedSize); // room only for the blocks that exist
    AddMenu();
}

QLabel* frmParams::NewLabel(const QString& name, Qt::Alignment alignment)
{
    auto* label = new QLabel(this);
    label->setObjectName(name);
    label->setTextFormat(Qt::PlainText);
    label->setAlignment(alignment | Qt::AlignVCenter);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    label->setContextMenuPolicy(Qt::NoContextMenu); // the window's menu serves all labels
    return label;
}

QGridLayout* frmParams::NewHead()
{
    auto* head = new QGridLayout;
    head->setColumnStretch(1, 1);
    const auto row = [&](int at, const char* captionName, int caption, const char* valueName) {
        QLabel* name = NewLabel(captionName, Qt::AlignLeft);
        name->setText(Words(caption));
        QLabel* value = NewLabel(valueName, Qt::AlignRight);
        value->setFont(Bold(value->font()));
        head->addWidget(name, at, 0);
        head->addWidget(value, at, 1);
        return value;
    };
    m_lblMethName = row(0, "lblMeth", kModelText, "lblMethName");
    m_lblFitOpName = row(1, "lblFitOp", kFitText, "lblFitOpName");
    m_lblR2 = row(2, "lblRSqr", kRSqrText, "lblR2");
    return head;
}

frmParams::Block frmParams::NewBlock(const QString& frameName, const QString& headingName, int headingText,
                                     const QString& rowName)
{
    Block block;
    block.rowName = rowName;
    block.frame = new QGroupBox(this);
    block.frame->setObjectName(frameName);
    block.frame->setAccessibleName(Words(headingText));
    block.grid = new QGridLayout(block.frame);
    block.grid->setColumnStretch(1, 1);
    block.grid->setHorizontalSpacing(2 * QFontMetrics(font()).height());
    QLabel* heading = NewLabel(headingName, Qt::AlignLeft);
    heading->setText(Words(headingText));
    heading->setFont(Bold(heading->font()));
    block.grid->addWidget(heading, 0, 0);
    return block;
}

void frmParams::AddRow(Block& block)
{
    const QString index = QString::number(block.names.size());
    block.names.push_back(NewLabel(block.rowName + "Name" + index, Qt::AlignLeft));
    block.values.push_back(NewLabel(block.rowName + "Val" + index, Qt::AlignRight));
    const int row = static_cast<int>(block.names.size()); // row 0 is the heading
    block.grid->addWidget(block.names.back(), row, 0);
    block.grid->addWidget(block.values.back(), row, 1);
}

void frmParams::Fill(Block& block, const std::vector<ParameterReport::Row>& rows)
{
    while (block.names.size() < rows.size())
        AddRow(block);
    for (std::size_t i = 0; i < block.names.size(); ++i) {
        const bool filled = i < rows.size();
        block.names[i]->setText(filled ? QString::fromStdString(rows[i].name) : QString());
        block.values[i]->setText(filled ? QString::fromStdString(rows[i].value) : QString());
        block.names[i]->setVisible(filled);
        block.values[i]->setVisible(filled);
    }
}

void frmParams::AddRemarks()
{
    const QString heading = QString::fromLatin1(ParameterReport::kRemarksHeading);
    m_remarksFrame = new QGroupBox(this);
    m_remarksFrame->setObjectName(QStringLiteral("picRemarks"));
    m_remarksFrame->setAccessibleName(heading);
    auto* rows = new QVBoxLayout(m_remarksFrame);
    QLabel* title = NewLabel("lblRemarks", Qt::AlignLeft);
    title->setText(heading);
    title->setFont(Bold(title->font()));
    rows->addWidget(title);
    m_remarksArea = new QScrollArea(m_remarksFrame);
    m_remarksArea->setFrameShape(QFrame::NoFrame);
    m_remarksArea->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    rows->addWidget(m_remarksArea);
}

/// Each sentence in a label of its own, wrapped at a width that reads well; beyond a dozen lines they scroll.
void frmParams::FillRemarks(const std::vector<std::string>& sentences)
{
    constexpr int kColumns = 64;
    constexpr int kMostLines = 14;
    const QFontMetrics metrics(font());
    const int width = kColumns * metrics.averageCharWidth();
    auto* page = new QWidget; // the area deletes the one before
    auto* rows = new QVBoxLayout(page);
    rows->setContentsMargins(0, 0, 0, 0);
    m_remarks.clear();
    for (const std::string& sentence : sentences) {
        QLabel* label = NewLabel("lblRemark" + QString::number(m_remarks.size()), Qt::AlignLeft);
        label->setText(QString::fromStdString(sentence));
        label->setWordWrap(true);
        label->setFixedSize(width, label->heightForWidth(width));
        rows->addWidget(label);
        m_remarks.push_back(label);
    }
    m_remarksArea->setWidget(page);
    page->setAutoFillBackground(false); // the frame's own shade shows through
    m_remarksArea->viewport()->setAutoFillBackground(false);
    page->adjustSize();
    const bool scrolls = page->height() > kMostLines * metrics.lineSpacing();
    m_remarksArea->setVerticalScrollBarPolicy(scrolls ? Qt::ScrollBarAlwaysOn : Qt::ScrollBarAlwaysOff);
    m_remarksArea->setFixedSize(width +
                                    (scrolls ? m_remarksArea->verticalScrollBar()->sizeHint().width() : 0),
                                scrolls ? kMostLines * metrics.lineSpacing() : page->height());
    m_remarksFrame->setVisible(!sentences.empty());
}

void frmParams::AddButtons()
{
    auto* buttons = new QDialogButtonBox(this);
    const auto add = [&](int text, const char* name) {
        QPushButton* button = buttons->addButton(Words(text), QDialogButtonBox::ActionRole);
        button->setObjectName(QString::fromLatin1(name));
        button->setAutoDefault(false);
        return button;
    };
    connect(add(kPrintText, "cmdPrint"), &QPushButton::clicked, this, &frmParams::printRequested);
    connect(add(kConfIntsText, "cmdCIs"), &QPushButton::clicked, this, &frmParams::confIntsRequested);
    QPushButton* close = buttons->addButton(Words(kCloseText), QDialogButtonBox::AcceptRole);
    close->setObjectName(QStringLiteral("cmdClose"));
    close->setDefault(true);
    connect(close, &QPushButton::clicked, this, &QWidget::hide);
    auto* help = new QPushButton(style()->standardIcon(QStyle::SP_DialogHelpButton), {});
    help->setObjectName(QStringLiteral("cmdHelp"));
    help->setAutoDefault(false);
    help->setToolTip(Words(kHelpText).remove('&'));
    help->setAccessibleName(help->toolTip());
    connect(help, &QPushButton::clicked, this, &frmParams::helpRequested);
    buttons->addButton(help, QDialogButtonBox::HelpRole);
    layout()->addWidget(buttons);
}

void frmParams::AddMenu()
{
    auto* copy = new QAction(tr("&Copy"), this);
    copy->setShortcut(QKeySequence::Copy);
    connect(copy, &QAction::triggered, this, &frmParams::CopySelection);
    auto* copyReport = new QAction(tr("Copy &Report"), this);
    copyReport->setObjectName(QStringLiteral("actCopyReport"));
    connect(copyReport, &QAction::triggered, this, &frmParams::CopyReport);
    addActions({copy, copyReport});
    setContextMenuPolicy(Qt::ActionsContextMenu);
}

void frmParams::Show(const ParameterReport& report)
{
    m_report = report;
    m_lblMethName->setText(Trimmed(report.modelTitle));
    m_lblFitOpName->setText(Trimmed(report.fitTitle));
    m_lblR2->setText(QString::fromStdString(report.rSqr));
    m_lblCIRange->setText(QString::fromStdString(report.intervalLevels));
    Fill(m_inputs, report.inputs);
    Fill(m_estimates, report.estimates);
    Fill(m_intervals, report.intervals);
    m_intervals.frame->setVisible(!report.intervals.empty());
    FillRemarks(report.remarks);
    show();
    raise();
}

void frmParams::CopyReport()
{
    QGuiApplication::clipboard()->setText(QString::fromStdString(m_report.AsText()));
}

void frmParams::CopySelection()
{
    for (const QLabel* label : findChildren<QLabel*>())
        if (label->hasSelectedText() && label->hasFocus()) {
            QGuiApplication::clipboard()->setText(label->selectedText());
            return;
        }
}
