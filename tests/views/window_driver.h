// SPDX-License-Identifier: MIT
#pragma once

#include "gallery/gallery_world.h"

#include <QAccessible>
#include <QPoint>
#include <QString>

#include <functional>

namespace halvane::test {

/// Every visible item from here down.
void forEachItem(QQuickItem* from, const std::function<void(QQuickItem*)>& visit);
/// Everything from here down that assistive technology finds.
void forEachAccessible(QAccessibleInterface* from,
                       const std::function<void(QAccessibleInterface&)>& visit);

/// Works a window as its user does: finds things by what assistive technology calls them, and sends
/// mouse and key events through the window system.
class WindowDriver {
  public:
    explicit WindowDriver(QQuickWindow& window);

    /// The first visible thing of a role whose name is, or begins with, the text; null when there
    /// is none.
    [[nodiscard]] QAccessibleInterface* find(const QString& name,
                                             QAccessible::Role role = QAccessible::NoRole) const;
    [[nodiscard]] bool shows(const QString& name) const { return find(name) != nullptr; }
    /// Waits until it is there.
    [[nodiscard]] bool waitsFor(const QString& name) const;

    [[nodiscard]] QPoint centreOf(const QString& name,
                                  QAccessible::Role role = QAccessible::NoRole) const;
    /// Each gives false when there is no such thing.
    bool click(const QString& name, QAccessible::Role role = QAccessible::NoRole,
               Qt::MouseButton button = Qt::LeftButton);
    /// Two clicks on the place where the thing was at the first one, as a hand makes them: what
    /// moves meanwhile is not followed.
    bool doubleClick(const QString& name, QAccessible::Role role = QAccessible::NoRole);
    void clickAt(const QPoint& place, Qt::KeyboardModifiers modifiers = {});
    void doubleClickAt(const QPoint& place);
    void pointAt(const QPoint& place);
    /// Turns the wheel over a place, downwards where steps is above 0.
    void turnWheel(const QPoint& place, int steps, Qt::KeyboardModifiers modifiers = {});
    /// Waits until rows and tiles stay where they are and no menu fades; false when they do not.
    [[nodiscard]] bool comesToRest() const;
    void drag(const QPoint& from, const QPoint& to);
    /// The two halves of a drag.
    void hold(const QPoint& from, const QPoint& to);
    void release(const QPoint& at);
    /// Presses Tab until the keyboard is on the thing of this name; false when it never gets there.
    bool tabTo(const QString& name);
    /// What the keyboard is on; empty when that has no name.
    [[nodiscard]] QString focusedName() const;
    void key(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier);
    void type(const QString& text);

    [[nodiscard]] QQuickWindow& window() const { return m_window; }

  private:
    QQuickWindow& m_window;
};

} // namespace halvane::test
