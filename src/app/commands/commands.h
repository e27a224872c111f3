// SPDX-License-Identifier: MIT
#pragma once

#include "app/commands/command.h"
#include "app/commands/command_table.h"

#include <QObject>

#include <map>

namespace halvane {

class LibraryViewModel;

/// The menus and their commands. Titles and enabled states follow the library; the keys work in
/// every window. Main thread.
class Commands : public QObject {
    Q_OBJECT

  public:
    /// The library must outlive this object.
    explicit Commands(LibraryViewModel& library, QObject* parent = nullptr);

    QList<CommandMenu*>& menus() { return m_menus; }
    /// The command in the menus.
    [[nodiscard]] Command& find(CommandId id) const { return *m_byId.at(id); }
    /// Does what the command stands for, whether or not the menus offer it now.
    void perform(CommandId id);

    bool eventFilter(QObject* watched, QEvent* event) override;

  Q_SIGNALS:
    /// Titles or enabled states have changed.
    void changed();

    // What the commands ask of the windows.
    void windowAsked(const QString& id);
    void searchAsked();
    void miniPlayerToggled();
    void fullScreenToggled();
    void quitAsked();

  private:
    void add(CommandMenu& menu, const CommandSpec& spec);
    void followLibrary();
    void refresh();
    void show(const CommandState& now);
    [[nodiscard]] CommandState state() const;
    [[nodiscard]] bool takesKeysFromText(int keyCombination) const;

    LibraryViewModel& m_library;
    CommandState m_shown; ///< the state that titles and enabled states show
    QList<CommandMenu*> m_menus;
    std::map<CommandId, Command*> m_byId;
};

} // namespace halvane
