// SPDX-License-Identifier: MIT
#pragma once

#include <QAccessible>
#include <QQuickItem>
#include <QStringList>
#include <QtQml/qqmlregistration.h>

namespace halvane::views {

/// An item that assistive technology finds and works: a button, a row, a tab. Its role, name and
/// states are its Accessible properties, and each signal here that somebody listens to is an action
/// it offers. A press comes first, since a reader's "activate" takes the first: the toolkit's own
/// items offer the focus first. Main thread.
class Operable : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT
    /// It opens something, such as a menu.
    Q_PROPERTY(bool opens MEMBER m_opens NOTIFY opensChanged)
    /// What it opens is open.
    Q_PROPERTY(bool isOpen MEMBER m_isOpen NOTIFY isOpenChanged)

  public:
    explicit Operable(QQuickItem* parent = nullptr);

    [[nodiscard]] bool opens() const { return m_opens; }
    [[nodiscard]] bool isOpen() const { return m_isOpen; }

    /// The names of what can be asked of it, by which act() does it.
    [[nodiscard]] QStringList actions() const;
    void act(const QString& action);

  Q_SIGNALS:
    void opensChanged();
    void isOpenChanged();

    void pressAsked();
    void menuAskedFor();
    void moveUpAsked();
    void moveDownAsked();
    void removeAsked();
    /// Without a listener the item itself takes the focus, where it can.
    void focusAsked();

  private:
    bool m_opens = false;
    bool m_isOpen = false;
};

} // namespace halvane::views
