// SPDX-License-Identifier: MIT
#include "app/windows/window_registry.h"

#include "app/windows/edge_resizer.h"
#include "app/windows/screen_bounds.h"
#include "app/windows/window_geometry.h"
#include "app/windows/window_placement.h"
#include "platform/log.h"

#include <QGuiApplication>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <QScreen>

#include <algorithm>

namespace halvane {

using namespace Qt::StringLiterals;

namespace {

QList<QRect> freeAreas() {
    QList<QRect> areas;
    for (const auto* screen : QGuiApplication::screens())
        areas.append(screen->availableGeometry());
    return areas;
}

// A popup that closes leaves the keyboard with the window's root item, which hears no keys. It goes
// back to what had it in the window's view.
void takeKeyboardBack(const QQuickWindow& window) {
    if (window.activeFocusItem() != window.contentItem())
        return;
    const auto views = window.contentItem()->childItems();
    const auto view = std::ranges::find_if(views, &QQuickItem::isFocusScope);
    if (view != views.end())
        (*view)->forceActiveFocus(Qt::PopupFocusReason);
}

} // namespace

WindowRegistry::WindowRegistry(QQmlEngine& engine, const QUrl& viewsRoot,
                               const QString& geometryFile, QObject* parent)
    : QObject(parent)
    , m_engine(engine)
    , m_viewsRoot(viewsRoot)
    , m_geometry(std::make_unique<WindowGeometry>(geometryFile)) {
}

WindowRegistry::~WindowRegistry() {
    for (auto* window : std::as_const(m_windows)) {
        window->disconnect(this);
        delete window;
    }
}

bool WindowRegistry::canPlaceWindows() {
    return QGuiApplication::platformName() == QLatin1String("xcb");
}

QQuickWindow* WindowRegistry::open(const QString& id) {
    auto* window = prepared(id);
    if (!window)
        return nullptr;
    if (window->windowState() == Qt::WindowMinimized)
        window->setWindowState(Qt::WindowNoState);
    // A window manager would place a window that comes back as if it were a new one.
    if (!window->isVisible() && canPlaceWindows() && m_lastPlaces.contains(id))
        window->setPosition(m_lastPlaces.value(id));
    window->setVisible(true);
    window->raise();
    window->requestActivate();
    Q_EMIT windowOpened(id);
    return window;
}

QQuickWindow* WindowRegistry::prepared(const QString& id) {
    if (auto* window = m_windows.value(id))
        return window;
    const auto* spec = windowSpec(id);
    return spec ? make(*spec) : nullptr;
}

QQuickWindow* WindowRegistry::make(const WindowSpec& spec) {
    QQmlComponent component(&m_engine, m_viewsRoot.resolved(QUrl(spec.file)));
    auto object = std::unique_ptr<QObject>(component.create());
    auto* window = qobject_cast<QQuickWindow*>(object.get());
    if (!window) {
        qCCritical(libraryLog, "window \"%s\" can't be made: %s", qUtf8Printable(spec.id),
                   qUtf8Printable(component.errorString()));
        return nullptr;
    }
    (void)object.release(); // it is among the windows now
    setUp(*window, spec);
    m_windows.insert(spec.id, window);
    Q_EMIT windowMade(window);
    return window;
}

void WindowRegistry::setUp(QQuickWindow& window, const WindowSpec& spec) {
    window.setObjectName(spec.id);
    window.setTitle(spec.title);
    // A hidden window costs nothing; and on Wayland, where hiding takes its surface away, Qt 6.4
    // crashes when it draws into what it kept.
    window.setPersistentGraphics(false);
    window.setPersistentSceneGraph(false);
    switch (spec.kind) {
    case WindowSpec::Kind::normal:
        break;
    case WindowSpec::Kind::hiddenTitleBar:
        window.setFlags(window.flags() | Qt::FramelessWindowHint);
        break;
    case WindowSpec::Kind::popup:
        window.setFlags(Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint);
        connect(&window, &QWindow::activeChanged, this, [&window] {
            if (!window.isActive())
                window.hide();
        });
        break;
    }
    if (spec.isResizable() && spec.kind == WindowSpec::Kind::hiddenTitleBar)
        new EdgeResizer(&window);
    placeInitially(window, spec);
    if (spec.isResizable())
        new ScreenBounds(&window, spec.minimumSize);
    if (spec.kind != WindowSpec::Kind::popup)
        m_geometry->follow(&window, spec.id);
    connect(&window, &QQuickWindow::activeFocusItemChanged, this,
            [&window] { takeKeyboardBack(window); });
    connect(&window, &QWindow::visibleChanged, this,
            [this, &window] { visibilityChanged(window); });
}

void WindowRegistry::placeInitially(QQuickWindow& window, const WindowSpec& spec) {
    const auto remembered = m_geometry->remembered(spec.id);
    auto place = remembered ? stillReachable(remembered->place, freeAreas()) : std::nullopt;
    if (spec.isResizable()) {
        const QSize size =
            remembered ? remembered->place.size().expandedTo(spec.minimumSize) : *spec.defaultSize;
        if (place)
            place = fittedInto(areaAround(*place, freeAreas()), {place->topLeft(), size});
        window.resize(place ? place->size() : size.boundedTo(window.screen()->availableSize()));
        if (remembered && remembered->isMaximized)
            window.setWindowState(Qt::WindowMaximized);
    }
    if (!canPlaceWindows())
        return;
    if (place)
        window.setPosition(place->topLeft());
    else if (const auto* screen = window.screen(); screen && spec.id == QLatin1String("mini"))
        window.setPosition(topTrailing(screen->availableGeometry(), window.size()));
    else if (const auto* main = visibleWindow(u"main"_s);
             main && spec.kind == WindowSpec::Kind::normal)
        window.setPosition(
            centredOn(main->geometry(), window.size(), main->screen()->availableGeometry()));
}

void WindowRegistry::close(const QString& id) {
    if (auto* window = m_windows.value(id))
        window->close();
}

bool WindowRegistry::isOpen(const QString& id) const {
    const auto* window = m_windows.value(id);
    return window && window->isVisible();
}

QQuickWindow* WindowRegistry::visibleWindow(const QString& idPrefix) const {
    for (auto* window : m_windows) {
        if (window->isVisible() && window->objectName().startsWith(idPrefix))
            return window;
    }
    return nullptr;
}

bool WindowRegistry::isAnyOpen() const {
    return std::any_of(m_windows.begin(), m_windows.end(),
                       [](const auto* window) { return window->isVisible(); });
}

// A window that closes often opens another in the same turn; only what is left afterwards counts.
void WindowRegistry::visibilityChanged(QQuickWindow& window) {
    if (window.isVisible())
        return;
    if (windowSpec(window.objectName())->kind !=
        WindowSpec::Kind::popup) // it opens beside its icon
        m_lastPlaces.insert(window.objectName(), window.position());
    if (m_closing)
        return;
    m_closing = true;
    QMetaObject::invokeMethod(
        this,
        [this] {
            m_closing = false;
            if (!isAnyOpen())
                Q_EMIT lastWindowClosed();
        },
        Qt::QueuedConnection);
}

} // namespace halvane
