// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/MenuState.h"

#include <QList>
#include <QObject>
#include <QString>
#include <map>
#include <string>
#include <vector>

class QAction;
class QMainWindow;
class QMenu;
class QUndoStack;

/// The menus of the main window: captions, names and what is enabled. What a command does is told by whoever
/// listens to `Chosen`.
class MainMenu : public QObject
{
    Q_OBJECT

public:
    /// Fills the menu bar of `window`, which owns everything made here.
    explicit MainMenu(QMainWindow& window);

    void Apply(const MenuState& state);

    /// Rebuilds the list at the top of "Graph": one entry a window, in this order.
    void ListGraphs(const std::vector<std::string>& titles);

    /// Fills the list of recent files under Open, in this order.
    void ListRecent(const QStringList& paths);

    /// Says in the entries Undo and Redo what they would take back and bring back.
    void ListSteps(const QUndoStack& steps);

    /// The Edit menu at the mouse.
    void PopUpEdit();

signals:
    /// `command` is the entry's name ("mnuOpen").
    void Chosen(const QString& command);
    /// Position of the graph in the list, from 0.
    void GraphChosen(int position);
    void RecentChosen(const QString& path);
    void AboutToShow();
    void EditAboutToShow();
    void EditHidden();

private:
    struct Entry;
    QMenu* AddMenu(const char* name, int captionId, const std::vector<Entry>& entries);
    void AddGraphMenu();
    void AddEntry(QMenu* menu, const Entry& entry);

    QMainWindow& m_window;
    QMenu* m_graphs = nullptr;
    QList<QAction*> m_windowList; ///< its entries that bring windows forward
    QMenu* m_edit = nullptr;
    QMenu* m_recent = nullptr;
    std::map<QString, QMenu*> m_menus;
    std::map<QString, QAction*> m_actions;
};
