// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/MainMenu.h"

#include "toolkit/Words.h"

#include <QAction>
#include <QCursor>
#include <QFileInfo>
#include <QKeySequence>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QUndoStack>

/// One entry of a menu; without a name, a separator; without a caption, one whose words change.
struct MainMenu::Entry {
    const char* name = nullptr;
    int captionId = 0;
    QKeySequence keys = {};
};

MainMenu::MainMenu(QMainWindow& window) : QObject(&window), m_window(window)
{
    const Entry separator;
    QMenu* file = AddMenu("mnuFile", 1,
                          {{"mnuNew", 2, QKeySequence::New},
                           {"mnuOpen", 3, QKeySequence::Open},
                           separator,
                           {"mnuSave", 5, QKeySequence::Save},
                           {"mnuSaveAs", 6, QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_S)},
                           separator,
                           {"mnuPrint", 8, QKeySequence::Print},
                           {"mnuTextExport", 9},
                           separator,
                           {"mnuClose", 12, QKeySequence::Close},
                           {"mnuExit", 13, QKeySequence::Quit}});
    m_recent = new QMenu(tr("Open &Recent"), file);
    m_recent->setObjectName("mnuRecent");
    file->insertMenu(file->actions().at(2), m_recent); // below Open
    m_edit = AddMenu("mnuEdit", 14,
                     {{"mnuEditMode", 15, QKeySequence(Qt::CTRL | Qt::Key_M)},
                      separator,
                      {"mnuUndo", 0, QKeySequence::Undo},
                      {"mnuRedo", 0, QKeySequence::Redo},
                      separator,
                      {"mnuFileDescription", 17},
                      separator,
                      {"mnuDeleteRow", 19},
                      {"mnuInsertRow", 20},
                      {"mnuDeleteColumn", 21},
                      {"mnuInsertColumn", 22},
                      {"mnuAddRow", 23},
                      {"mnuCut", 24, QKeySequence::Cut},
                      {"mnuCopy", 25, QKeySequence::Copy},
                      {"mnuPaste", 26, QKeySequence::Paste},
                      separator,
                      {"mnuFormat", 28},
                      {"mnuNumber", 29}});
    m_actions.at("mnuEditMode")->setCheckable(true);
    connect(m_edit, &QMenu::aboutToShow, this, &MainMenu::EditAboutToShow);
    // While the menu is closed nobody looks at the clipboard, and the keys of its entries must work.
    connect(m_edit, &QMenu::aboutToHide, this, &MainMenu::EditHidden, Qt::QueuedConnection);
    AddMenu("mnuData", 30, {{"mnuDataPlots", 31}, {"mnuColumnUnits", 0}});
    m_actions.at("mnuColumnUnits")->setText(tr("Column &Units..."));
    AddMenu("mnuFit", 32,
            {{"mnuNewModel", 33},
             {"mnuNewParams", 34},
             {"mnuParameters", 35},
             separator,
             {"mnuGenerateConfInts", 37},
             {"mnuDisplayConfInts", 38},
             separator,
             {"mnuFitManager", 40}});
    AddMenu("mnuProjections", 41, {{"mnuViewProj", 42}, {"mnuProject", 43}, {"mnuProjWithCI", 44}});
    AddGraphMenu();
    AddMenu("mnuOptions", 46, {{"mnuSettings", 47}});
    AddMenu("mnuHelp", 48, {{"mnuHelpContents", 51}, {"mnuAbout", 49}});
}

QMenu* MainMenu::AddMenu(const char* name, int captionId, const std::vector<Entry>& entries)
{
    QMenu* menu = m_window.menuBar()->addMenu(Words(captionId));
    menu->setObjectName(QString::fromLatin1(name));
    menu->setToolTipsVisible(true);
    connect(menu, &QMenu::aboutToShow, this, &MainMenu::AboutToShow);
    for (const Entry& entry : entries)
        AddEntry(menu, entry);
    m_menus[menu->objectName()] = menu;
    return menu;
}

/// The list of windows comes before its line.
void MainMenu::AddGraphMenu()
{
    m_graphs = AddMenu("mnuGraph", 45,
                       {Entry{}, {"mnuTile", 0}, {"mnuCascade", 0}, {"mnuCloseAll", 0}, {"mnuOverview", 0}});
    m_actions.at("mnuTile")->setText(tr("&Tile"));
    m_actions.at("mnuCascade")->setText(tr("C&ascade"));
    m_actions.at("mnuCloseAll")->setText(tr("Close A&ll"));
    m_actions.at("mnuOverview")->setText(tr("&Overview"));
}

void MainMenu::AddEntry(QMenu* menu, const Entry& entry)
{
    if (!entry.name) {
        menu->addSeparator();
        return;
    }
    QAction* action = menu->addAction(entry.captionId > 0 ? Words(entry.captionId) : QString());
    action->setObjectName(QString::fromLatin1(entry.name));
    action->setShortcut(entry.keys);
    connect(action, &QAction::triggered, this, [this, action] { emit Chosen(action->objectName()); });
    m_actions[action->objectName()] = action;
}

void MainMenu::Apply(const MenuState& state)
{
    const std::map<QString, bool> menus{{"mnuFile", state.file},       {"mnuEdit", state.edit},
                                        {"mnuData", state.data},       {"mnuFit", state.fit},
                                        {"mnuGraph", state.graph},     {"mnuProjections", state.projections},
                                        {"mnuOptions", state.options}, {"mnuHelp", state.help}};
    for (const auto& [name, enabled] : menus)
        m_menus.at(name)->setEnabled(enabled);

    // An entry under a disabled menu could still be reached by its keys.
    const std::map<QString, bool> entries{{"mnuNew", state.file && state.newData},
                                          {"mnuOpen", state.file && state.open},
                                          {"mnuSave", state.file && state.save},
                                          {"mnuSaveAs", state.file && state.saveAs},
                                          {"mnuPrint", state.file && state.print},
                                          {"mnuTextExport", state.file && state.textExport},
                                          {"mnuClose", state.file && state.close},
                                          {"mnuEditMode", state.editMode},
                                          {"mnuFileDescription", state.fileDescription},
                                          {"mnuDeleteRow", state.rows},
                                          {"mnuInsertRow", state.rows},
                                          {"mnuAddRow", state.rows},
                                          {"mnuDeleteColumn", state.columns},
                                          {"mnuInsertColumn", state.columns},
                                          {"mnuCut", state.cut},
                                          {"mnuCopy", state.copy},
                                          {"mnuPaste", state.paste},
                                          {"mnuFormat", state.formats},
                                          {"mnuNumber", state.formats},
                                          {"mnuDataPlots", state.data && state.dataPlots},
                                          {"mnuColumnUnits", state.data && state.dataPlots},
                                          {"mnuNewModel", state.fit && state.newModel},
                                          {"mnuNewParams", state.fit && state.newParams},
                                          {"mnuParameters", state.fit && state.parameters},
                                          {"mnuGenerateConfInts", state.fit && state.generateConfInts},
                                          {"mnuDisplayConfInts", state.fit && state.displayConfInts},
                                          {"mnuFitManager", state.fit && state.fitManager},
                                          {"mnuViewProj", state.projections && state.viewProj},
                                          {"mnuProject", state.projections && state.project},
                                          {"mnuProjWithCI", state.projections && state.projWithCI},
                                          {"mnuTile", state.graph},
                                          {"mnuCascade", state.graph},
                                          {"mnuCloseAll", state.graph},
                                          {"mnuOverview", state.graph},
                                          {"mnuSettings", state.options}};
    for (const auto& [name, enabled] : entries)
        m_actions.at(name)->setEnabled(enabled);
    m_actions.at("mnuEditMode")->setChecked(state.inEditMode);
}

void MainMenu::ListRecent(const QStringList& paths)
{
    m_recent->clear();
    m_recent->setEnabled(!paths.isEmpty());
    int number = 1;
    for (const QString& path : paths) {
        const QString name = QFileInfo(path).fileName();
        QAction* action = m_recent->addAction(
            QStringLiteral("&%1  %2").arg(number++).arg(QString(name).replace('&', "&&")));
        action->setToolTip(path);
        connect(action, &QAction::triggered, this, [this, path] { emit RecentChosen(path); });
    }
    m_recent->setToolTipsVisible(true);
}

void MainMenu::ListSteps(const QUndoStack& steps)
{
    const auto show = [this](const char* name, const QString& word, const QString& what, bool can) {
        QAction* action = m_actions.at(name);
        action->setText(what.isEmpty() ? word : word + " " + what);
        action->setEnabled(can);
    };
    show("mnuUndo", tr("&Undo"), steps.undoText(), steps.canUndo());
    show("mnuRedo", tr("&Redo"), steps.redoText(), steps.canRedo());
}

void MainMenu::PopUpEdit()
{
    m_edit->popup(QCursor::pos());
}

void MainMenu::ListGraphs(const std::vector<std::string>& titles)
{
    qDeleteAll(m_windowList);
    m_windowList.clear();
    QAction* const behind = m_graphs->actions().constFirst();
    int position = 0;
    for (const std::string& title : titles) {
        QString caption = QString::fromStdString(title);
        auto* action = new QAction(caption.replace('&', "&&"), m_graphs); // a title has no mnemonic
        action->setObjectName("mnuWindowList" + QString::number(position));
        connect(action, &QAction::triggered, this, [this, position] { emit GraphChosen(position); });
        m_graphs->insertAction(behind, action);
        m_windowList.append(action);
        ++position;
    }
}
