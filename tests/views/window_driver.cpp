// SPDX-License-Identifier: MIT
#include "views/window_driver.h"

#include <QCursor>
#include <QScreen>
#include <QTest>
#include <QWheelEvent>

#include <utility>

namespace halvane::test {

namespace {

QAccessibleInterface* search(QAccessibleInterface* from, const QString& name,
                             QAccessible::Role role) {
    if (!from || !from->isValid() || from->state().invisible)
        return nullptr;
    const QString text = from->text(QAccessible::Name);
    if (text.startsWith(name) && (role == QAccessible::NoRole || from->role() == role) &&
        from->role() != QAccessible::Window)
        return from;
    for (int i = 0; i < from->childCount(); ++i)
        if (auto* found = search(from->child(i), name, role))
            return found;
    return nullptr;
}

} // namespace

void forEachItem(QQuickItem* from, const std::function<void(QQuickItem*)>& visit) {
    if (!from->isVisible())
        return;
    visit(from);
    for (QQuickItem* child : from->childItems())
        forEachItem(child, visit);
}

void forEachAccessible(QAccessibleInterface* from,
                       const std::function<void(QAccessibleInterface&)>& visit) {
    if (!from || !from->isValid() || from->state().invisible)
        return;
    visit(*from);
    for (int i = 0; i < from->childCount(); ++i)
        forEachAccessible(from->child(i), visit);
}

WindowDriver::WindowDriver(QQuickWindow& window)
    : m_window(window) {
    QAccessible::setActive(true);
    // The display's own pointer would hover over whatever opens beneath it.
    QCursor::setPos(m_window.screen()->geometry().bottomRight());
    m_window.requestActivate();
    GalleryWorld::waitFor([this] { return m_window.isActive(); }, 1000);
}

QAccessibleInterface* WindowDriver::find(const QString& name, QAccessible::Role role) const {
    return search(QAccessible::queryAccessibleInterface(&m_window), name, role);
}

bool WindowDriver::waitsFor(const QString& name) const {
    return GalleryWorld::waitFor([&] { return shows(name); });
}

QPoint WindowDriver::centreOf(const QString& name, QAccessible::Role role) const {
    auto* thing = find(name, role);
    return thing ? m_window.mapFromGlobal(thing->rect().center()) : QPoint();
}

bool WindowDriver::click(const QString& name, QAccessible::Role role, Qt::MouseButton button) {
    if (!GalleryWorld::waitFor([&] { return find(name, role) != nullptr; }))
        return false;
    QTest::mouseClick(&m_window, button, {}, centreOf(name, role));
    return true;
}

bool WindowDriver::doubleClick(const QString& name, QAccessible::Role role) {
    if (!GalleryWorld::waitFor([&] { return find(name, role) != nullptr; }))
        return false;
    doubleClickAt(centreOf(name, role));
    return true;
}

void WindowDriver::clickAt(const QPoint& place, Qt::KeyboardModifiers modifiers) {
    QTest::mouseClick(&m_window, Qt::LeftButton, modifiers, place);
}

void WindowDriver::doubleClickAt(const QPoint& place) {
    constexpr int betweenClicks = 180;
    const int start = QTest::lastMouseTimestamp;
    QTest::mouseClick(&m_window, Qt::LeftButton, {}, place);
    QTest::qWait(betweenClicks);
    QTest::lastMouseTimestamp = start + betweenClicks; // QTest would keep them apart
    QTest::mouseClick(&m_window, Qt::LeftButton, {}, place);
}

void WindowDriver::pointAt(const QPoint& place) {
    QTest::mouseMove(&m_window, place);
}

void WindowDriver::turnWheel(const QPoint& place, int steps, Qt::KeyboardModifiers modifiers) {
    constexpr int oneStep = 120;
    for (int step = 0; step < std::abs(steps); ++step) {
        QWheelEvent event(place, m_window.mapToGlobal(place), {},
                          {0, steps > 0 ? -oneStep : oneStep}, Qt::NoButton, modifiers,
                          Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(&m_window, &event);
    }
}

bool WindowDriver::comesToRest() const {
    constexpr int enough = 4; // pictures that show the same places
    const auto places = [this] {
        QList<QRectF> found;
        forEachItem(m_window.contentItem(), [&](const QQuickItem* item) {
            if (item->inherits("halvane::views::Operable") && item->property("index").isValid())
                found.append(item->mapRectToScene({0, 0, item->width(), item->height()}));
            else if (item->inherits("QQuickPopupItem") && item->isVisible())
                found.append({item->opacity(), 0, 0, 0}); // it takes clicks until it has faded
        });
        return found;
    };
    bool isNew = false;
    QObject context;
    QObject::connect(&m_window, &QQuickWindow::frameSwapped, &context, [&] { isNew = true; });
    QList<QRectF> before;
    int same = 0;
    return GalleryWorld::waitFor([&] {
        m_window.update();
        if (!std::exchange(isNew, false))
            return false;
        same = std::exchange(before, places()) == before ? same + 1 : 0;
        return same >= enough;
    });
}

void WindowDriver::drag(const QPoint& from, const QPoint& to) {
    hold(from, to);
    release(to);
}

void WindowDriver::hold(const QPoint& from, const QPoint& to) {
    constexpr int steps = 12;
    QTest::mousePress(&m_window, Qt::LeftButton, {}, from);
    for (int step = 1; step <= steps; ++step) {
        QTest::mouseMove(&m_window, from + (to - from) * step / steps);
        QCoreApplication::processEvents();
    }
}

void WindowDriver::release(const QPoint& at) {
    QTest::mouseRelease(&m_window, Qt::LeftButton, {}, at);
}

bool WindowDriver::tabTo(const QString& name) {
    constexpr int enough = 60;
    for (int press = 0; press < enough && focusedName() != name; ++press)
        key(Qt::Key_Tab);
    return focusedName() == name;
}

QString WindowDriver::focusedName() const {
    auto* thing = m_window.activeFocusItem()
                      ? QAccessible::queryAccessibleInterface(m_window.activeFocusItem())
                      : nullptr;
    return thing ? thing->text(QAccessible::Name) : QString();
}

void WindowDriver::key(Qt::Key key, Qt::KeyboardModifiers modifiers) {
    QTest::keyClick(&m_window, key, modifiers);
}

void WindowDriver::type(const QString& text) {
    for (const QChar character : text)
        QTest::keyClick(&m_window, character.toLatin1());
}

} // namespace halvane::test
