// SPDX-License-Identifier: MIT
#include "app/commands/command.h"

namespace halvane {

Command::Command(CommandId id, const QKeySequence& shortcut, QObject* parent)
    : QObject(parent)
    , m_id(id)
    , m_shortcut(shortcut) {
}

QString Command::shortcutText() const {
    return m_shortcut.toString(QKeySequence::NativeText);
}

void Command::setTitle(const QString& title) {
    if (m_title == title)
        return;
    m_title = title;
    Q_EMIT titleChanged();
}

void Command::setEnabled(bool enabled) {
    if (m_enabled == enabled)
        return;
    m_enabled = enabled;
    Q_EMIT enabledChanged();
}

void Command::trigger() {
    if (m_enabled)
        Q_EMIT triggered();
}

CommandMenu::CommandMenu(const QString& title, QObject* parent)
    : QObject(parent)
    , m_title(title) {
}

void CommandMenu::append(Command* command) {
    command->setParent(this);
    m_items.append(command);
}

} // namespace halvane
