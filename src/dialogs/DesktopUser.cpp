// SPDX-License-Identifier: GPL-3.0-or-later
#include "dialogs/DesktopUser.h"

#include "dialogs/FormDialog.h"
#include "dialogs/ListPickerDialog.h"
#include "dialogs/RangeDialog.h"
#include "dialogs/SelectionDialog.h"
#include "dialogs/frmASCIIWizard.h"
#include "dialogs/frmContourRange.h"
#include "dialogs/frmInputParams.h"
#include "dialogs/frmNewFile.h"
#include "dialogs/frmNumberFormat.h"
#include "dialogs/frmOptions.h"
#include "dialogs/frmStartVals.h"
#include "toolkit/Fonts.h"
#include "toolkit/Words.h"

#include <QApplication>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QFontDialog>
#include <QFontInfo>
#include <QInputDialog>
#include <QMessageBox>
#include <QPushButton>
#include <QWindow>

namespace
{
QMessageBox::Icon IconOf(Icon icon)
{
    switch (icon) {
    case Icon::Information:
        return QMessageBox::Information;
    case Icon::Question:
        return QMessageBox::Question;
    case Icon::Exclamation:
        return QMessageBox::Warning;
    case Icon::Critical:
        return QMessageBox::Critical;
    case Icon::None:
        break;
    }
    return QMessageBox::NoIcon;
}

QMessageBox::StandardButtons ButtonsOf(Buttons buttons)
{
    switch (buttons) {
    case Buttons::OkCancel:
        return QMessageBox::Ok | QMessageBox::Cancel;
    case Buttons::YesNo:
        return QMessageBox::Yes | QMessageBox::No;
    case Buttons::YesNoCancel:
        return QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel;
    case Buttons::RetryCancel:
        return QMessageBox::Retry | QMessageBox::Cancel;
    case Buttons::Ok:
        break;
    }
    return QMessageBox::Ok;
}

Answer AnswerOf(int button)
{
    switch (button) {
    case QMessageBox::Yes:
        return Answer::Yes;
    case QMessageBox::No:
        return Answer::No;
    case QMessageBox::Retry:
        return Answer::Retry;
    case QMessageBox::Ok:
        return Answer::Ok;
    default:
        return Answer::Cancel;
    }
}

/// The busy pointer of long work would say "do not click" over a box that waits for a click.
class PlainPointer
{
public:
    PlainPointer() : m_set(QApplication::overrideCursor() != nullptr)
    {
        if (m_set)
            QApplication::setOverrideCursor(Qt::ArrowCursor);
    }
    ~PlainPointer()
    {
        if (m_set)
            QApplication::restoreOverrideCursor();
    }
    PlainPointer(const PlainPointer&) = delete;
    PlainPointer& operator=(const PlainPointer&) = delete;

private:
    bool m_set;
};
} // namespace

DesktopUser::DesktopUser(QWidget* parent) : m_parent(parent)
{
    QObject::connect(qGuiApp, &QGuiApplication::focusWindowChanged, &m_watch,
                     [this] { NoteWindowInFront(); });
}

void DesktopUser::NoteWindowInFront()
{
    QWidget* active = QApplication::activeWindow();
    if (active && !active->isModal())
        m_inFront = active->parentWidget() == m_parent ? active : m_parent;
}

/// The dialog in front, when one asks something on its own behalf; else the window in front.
QWidget* DesktopUser::Over()
{
    if (QWidget* dialog = QApplication::activeModalWidget())
        return dialog;
    // A window that belongs to the main one, such as the Fit Manager, keeps its place above it.
    NoteWindowInFront();
    // Right behind a box no window is active: the system has not given the focus back yet.
    const bool canBeSeen = m_inFront && m_inFront->isVisible() && !m_inFront->isMinimized();
    return canBeSeen ? m_inFront.data() : m_parent;
}

void DesktopUser::AddHelpButton(QMessageBox& box, const Message& message)
{
    QPushButton* help = box.addButton(QMessageBox::Help);
    help->setObjectName("cmdHelp");
    help->setText(Words(1955));
    help->disconnect(&box); // every button of such a box ends it, this one must not
    for (QDialogButtonBox* row : box.findChildren<QDialogButtonBox*>())
        help->disconnect(row);
    QObject::connect(help, &QPushButton::clicked, &box,
                     [this, topic = message.helpTopic] { ShowHelp(topic); });
    if (message.buttons == Buttons::Ok) // with a second button Escape would no longer find the only one
        box.setEscapeButton(QMessageBox::Ok);
    box.setProperty(IHelpViewer::kTopicProperty, QString::fromStdString(message.helpTopic));
}

void DesktopUser::ShowHelp(const std::string& topic)
{
    if (m_help)
        m_help->ShowTopic(topic);
}

Answer DesktopUser::Show(const Message& message)
{
    const PlainPointer pointer;
    QMessageBox box(IconOf(message.icon), QString::fromStdString(message.title),
                    QString::fromStdString(message.text), ButtonsOf(message.buttons), Over());
    box.setTextFormat(Qt::PlainText);
    if (message.buttons == Buttons::YesNo)
        box.setEscapeButton(QMessageBox::No);
    if (!message.helpTopic.empty())
        AddHelpButton(box, message);
    return AnswerOf(box.exec());
}

std::optional<std::string> DesktopUser::InputBox(const std::string& prompt, const std::string& title,
                                                 const std::string& suggestion)
{
    const PlainPointer pointer;
    QInputDialog box(Over());
    box.setWindowTitle(QString::fromStdString(title));
    box.setLabelText(QString::fromStdString(prompt));
    box.setTextValue(QString::fromStdString(suggestion));
    // Not as a least width, which the box's own layout would take back.
    box.resize(box.sizeHint().expandedTo({WidthForTitle(box, box.windowTitle()), 0}));
    return box.exec() == QDialog::Accepted ? std::optional(box.textValue().toStdString()) : std::nullopt;
}

std::optional<std::string> DesktopUser::AskFileToOpen(const FileQuestion& question)
{
    const PlainPointer pointer;
    const QString path =
        QFileDialog::getOpenFileName(Over(), {}, {}, QString::fromStdString(question.filter));
    return path.isEmpty() ? std::nullopt : std::optional(path.toStdString());
}

std::optional<std::string> DesktopUser::AskFileToSave(const FileQuestion& question)
{
    const PlainPointer pointer;
    QFileDialog dialog(Over(), QString::fromStdString(question.title));
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setNameFilter(QString::fromStdString(question.filter));
    // The ending is added inside the dialog, which then asks before it replaces a file of that name.
    dialog.setDefaultSuffix(QString::fromStdString(question.ending));
    dialog.selectFile(QString::fromStdString(question.suggestion));
    if (dialog.exec() != QDialog::Accepted)
        return std::nullopt;
    return dialog.selectedFiles().constFirst().toStdString();
}

bool DesktopUser::AskSelection(Selection& selection)
{
    const PlainPointer pointer;
    return SelectionDialog::Ask(*this, selection, Over());
}

bool DesktopUser::AskRange(RangeQuestion& question)
{
    const PlainPointer pointer;
    return RangeDialog::Ask(*this, question, Over());
}

bool DesktopUser::AskInputParams(InputParams& params)
{
    const PlainPointer pointer;
    return frmInputParams::Ask(*this, params, Over());
}

bool DesktopUser::AskStartVals(StartVals& starts)
{
    const PlainPointer pointer;
    return frmStartVals::Ask(*this, starts, Over());
}

bool DesktopUser::AskContourRange(ContourRange& range)
{
    const PlainPointer pointer;
    return frmContourRange::Ask(*this, range, Over());
}

bool DesktopUser::AskOptions(MinimiserOptions& options)
{
    const PlainPointer pointer;
    return frmOptions::Ask(*this, options, Over());
}

bool DesktopUser::AskAsciiWizard(AsciiWizard& wizard)
{
    const PlainPointer pointer;
    return frmASCIIWizard::Ask(*this, wizard, Over());
}

bool DesktopUser::AskListPicker(ListPicker& picker)
{
    const PlainPointer pointer;
    return ListPickerDialog::Ask(*this, picker, Over());
}

bool DesktopUser::AskNumberFormat(NumberFormatChoice& choice)
{
    const PlainPointer pointer;
    return frmNumberFormat::Ask(*this, choice, Over());
}

bool DesktopUser::AskFont(CellFont& font)
{
    const PlainPointer pointer;
    bool taken = false;
    const QFont chosen = QFontDialog::getFont(&taken, FontOf(font), Over());
    if (taken)
        font = {.name = chosen.family().toStdString(),
                .size = QFontInfo(chosen).pointSizeF(),
                .bold = chosen.bold(),
                .italic = chosen.italic()};
    return taken;
}

bool DesktopUser::AskNewDataSet(NewDataSet& wanted)
{
    const PlainPointer pointer;
    return frmNewFile::Ask(*this, wanted, Over());
}
