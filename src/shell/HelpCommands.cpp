// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/HelpCommands.h"

#include "base/HelpTopics.h"

#include <QApplication>
#include <QKeyEvent>
#include <QWidget>
#include <map>

namespace
{
/// By the names of the windows.
const std::map<QString, std::string>& WindowTopics()
{
    using namespace help_topics;
    static const std::map<QString, std::string> topics{
        {"frmVelt3", kMainWindow},          {"frmNewFile", kNewDataSet},
        {"frmASCIIWizard", kImportWizard},  {"frmParams", kParameters},
        {"frmModelGraph", kModelGraph},     {"frmProjGraph", kProjectionGraph},
        {"frmGraph", kContourRange},        {"frmInputParams", kInputParameters},
        {"frmStartVals", kStartingValues},  {"frmContourRange", kContourRange},
        {"frmNumberFormat", kNumberFormat}, {"frmGraphEdit", kGraphEdit},
        {"frmColumnUnits", kColumnUnits},   {"frmOverview", kOverview},
        {"frmOptions", kOptions},           {"frmFitManager", kFitManager},
        {"frmProjections", kScenarios},     {"HelpWindow", kContents}};
    return topics;
}

bool IsHelpKey(const QEvent& event)
{
    if (event.type() != QEvent::KeyPress)
        return false;
    const auto& key = static_cast<const QKeyEvent&>(event);
    return key.key() == Qt::Key_F1 && key.modifiers() == Qt::NoModifier;
}
} // namespace

HelpCommands::HelpCommands(IUser& user) : m_user(user)
{
    qApp->installEventFilter(this); // an entry of a menu would not get its key while a dialog is open
}

HelpCommands::~HelpCommands() = default;

void HelpCommands::LookIn(const QString& folder, const QStringList& places)
{
    m_window.reset();
    m_library.reset();
    m_folder = folder;
    m_places = places;
}

/// A manual that was missing may have come since, so it is looked for again each time.
bool HelpCommands::MayOpen()
{
    if (m_library)
        return true;
    auto library = std::make_unique<HelpLibrary>(m_folder, m_places);
    if (library->Failure().isEmpty()) {
        m_library = std::move(library);
        m_window = std::make_unique<HelpWindow>(*m_library);
        return true;
    }
    if (!m_telling) { // F1 over the message itself
        m_telling = true;
        m_user.Show({.text = library->Failure().toStdString(), .icon = Icon::Information});
        m_telling = false;
    }
    return false;
}

void HelpCommands::ShowTopic(const std::string& topic)
{
    if (MayOpen())
        m_window->Open(m_library->Page(topic));
}

void HelpCommands::ShowContents()
{
    ShowTopic(help_topics::kContents);
}

void HelpCommands::Close()
{
    if (m_window)
        m_window->close();
}

std::string HelpCommands::TopicOf(const QWidget* widget)
{
    for (const QWidget* at = widget; at; at = at->parentWidget()) {
        const QVariant own = at->property(kTopicProperty);
        if (own.isValid())
            return own.toString().toStdString();
        const auto known = WindowTopics().find(at->objectName());
        if (known != WindowTopics().end())
            return known->second;
    }
    return help_topics::kMainWindow;
}

bool HelpCommands::eventFilter(QObject* watched, QEvent* event)
{
    // Windows of the system see a key first and pass it on to the widget that has the focus.
    if (!watched->isWidgetType() || !IsHelpKey(*event))
        return false;
    const std::string topic = TopicOf(qobject_cast<QWidget*>(watched));
    // An open menu or list would keep the mouse.
    while (QWidget* popup = QApplication::activePopupWidget())
        if (!popup->close())
            break;
    ShowTopic(topic);
    return true;
}
