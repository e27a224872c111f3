// SPDX-License-Identifier: MIT
#pragma once

#include "app/commands/command_id.h"

#include <QKeySequence>
#include <QList>
#include <QObject>
#include <QQmlListProperty>
#include <QString>

namespace halvane {

/// One thing the user can ask for in a menu or by its keys, or a line between two of them. The keys
/// work in every window of the program; a menu only shows them. Main thread.
class Command : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool isSeparator READ isSeparator CONSTANT)
    Q_PROPERTY(QString title READ title NOTIFY titleChanged) ///< always English
    Q_PROPERTY(bool enabled READ isEnabled NOTIFY enabledChanged)
    Q_PROPERTY(
        QString shortcutText READ shortcutText CONSTANT) ///< by this keyboard's names; may be empty

  public:
    Command(CommandId id, const QKeySequence& shortcut, QObject* parent = nullptr);

    [[nodiscard]] bool isSeparator() const { return m_id == CommandId::separator; }
    [[nodiscard]] QString title() const { return m_title; }
    [[nodiscard]] bool isEnabled() const { return m_enabled; }
    [[nodiscard]] QKeySequence shortcut() const { return m_shortcut; }
    [[nodiscard]] QString shortcutText() const;

    void setTitle(const QString& title);
    void setEnabled(bool enabled);
    /// Asks for it, if it is enabled.
    Q_INVOKABLE void trigger();

  Q_SIGNALS:
    void titleChanged();
    void enabledChanged();
    void triggered();

  private:
    CommandId m_id;
    QKeySequence m_shortcut;
    QString m_title;
    bool m_enabled = true;
};

/// A titled list of commands and separators, in order. Owns them. Main thread.
class CommandMenu : public QObject {
    Q_OBJECT
    Q_PROPERTY(QString title READ title CONSTANT)
    Q_PROPERTY(QQmlListProperty<halvane::Command> items READ itemList CONSTANT)

  public:
    CommandMenu(const QString& title, QObject* parent = nullptr);

    [[nodiscard]] QString title() const { return m_title; }
    [[nodiscard]] const QList<Command*>& items() const { return m_items; }
    /// Adds a command at the end; the menu becomes its owner.
    void append(Command* command);
    QQmlListProperty<Command> itemList() { return {this, &m_items}; }

  private:
    QString m_title;
    QList<Command*> m_items;
};

} // namespace halvane
