// SPDX-License-Identifier: MIT
#include "app/commands/command.h"

namespace halvane {

Command::Command(CommandId id, const QKeySequence& shortcut, QObject* parent)
    : QObject(parent)
    , m_id(id)
    , m_shortcut(shortcut) {
}

QString Command::shortcutText() const {
    // The toolkit names the key first that everybody else names last, and by no name on keyboards.
    QString keys = m_shortcut.toString(QKeySequence::NativeText);
    static const QString meta = QStringLiteral("Meta+");
    if (keys.startsWith(meta)) {
        keys.remove(0, meta.size());
        keys.insert(keys.lastIndexOf(u'+') + 1, QStringLiteral("Super+"));
    }
    return keys;
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
