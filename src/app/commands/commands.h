// SPDX-License-Identifier: MIT
#pragma once

#include "app/commands/command.h"
#include "app/commands/command_table.h"

#include <QHash>
#include <QObject>

#include <functional>

namespace halvane {

class LibraryViewModel;

/// What the commands do that is not the library's doing.
struct CommandTargets {
    std::function<void(const QString& window)> openWindow;
    std::function<void()> find;
    std::function<void()> toggleMiniPlayer;
    std::function<void()> toggleFullScreen;
    std::function<void()> quit;
};

/// The menus and their commands, kept as the library's state has them, and their keys, which work
/// in every window. Main thread.
class Commands : public QObject {
    Q_OBJECT

  public:
    Commands(LibraryViewModel& library, CommandTargets targets, QObject* parent = nullptr);

    QList<CommandMenu*>& menus() { return m_menus; }
    /// Null when there is none of this identifier.
    [[nodiscard]] Command* find(const QString& id) const { return m_byId.value(id); }

    bool eventFilter(QObject* watched, QEvent* event) override;

  Q_SIGNALS:
    /// Titles or enabled states are others than before.
    void changed();

  private:
    std::function<void()> action(const QString& id, CommandTargets& targets);
    void followLibrary();
    void refresh();
    void show(const CommandState& now);
    [[nodiscard]] CommandState state() const;
    [[nodiscard]] bool takesKeysFromText(int keyCombination) const;

    LibraryViewModel& m_library;
    CommandState m_shown; ///< by which titles and enabled states are
    QList<CommandMenu*> m_menus;
    QHash<QString, Command*> m_byId;
};

} // namespace halvane
