// SPDX-License-Identifier: MIT
#pragma once

#include "app/windows/window_specs.h"

#include <QHash>
#include <QObject>
#include <QPoint>
#include <QUrl>

#include <memory>

class QQmlEngine;
class QQuickWindow;

namespace halvane {

class WindowGeometry;

/// The program's windows by identifier, each at most once. A window is made when it is first
/// opened, and kept, hidden, when it is closed. Main thread.
class WindowRegistry : public QObject {
    Q_OBJECT

  public:
    /// `viewsRoot` is where the windows' descriptions are; `geometryFile` remembers where they
    /// were.
    WindowRegistry(QQmlEngine& engine, const QUrl& viewsRoot, const QString& geometryFile,
                   QObject* parent = nullptr);
    ~WindowRegistry() override;

    /// Shows a window and brings it forward; null, with a log line, when it can't be made.
    QQuickWindow* open(const QString& id);
    /// The window without showing it; made if need be.
    QQuickWindow* prepared(const QString& id);
    void close(const QString& id);
    [[nodiscard]] bool isOpen(const QString& id) const;
    /// The first visible window whose identifier begins with this; null without one.
    [[nodiscard]] QQuickWindow* visibleWindow(const QString& idPrefix) const;
    [[nodiscard]] bool isAnyOpen() const;

    /// Whether this desktop lets a program place its windows.
    static bool canPlaceWindows();

  Q_SIGNALS:
    void windowMade(QQuickWindow* window);
    void windowOpened(const QString& id);
    /// No window is left open, at the end of the event loop's turn in which the last one closed.
    void lastWindowClosed();

  private:
    QQuickWindow* make(const WindowSpec& spec);
    void setUp(QQuickWindow& window, const WindowSpec& spec);
    void placeInitially(QQuickWindow& window, const WindowSpec& spec);
    void visibilityChanged(QQuickWindow& window);

    QQmlEngine& m_engine;
    QUrl m_viewsRoot;
    std::unique_ptr<WindowGeometry> m_geometry;
    QHash<QString, QQuickWindow*> m_windows; ///< owned
    QHash<QString, QPoint> m_lastPlaces;     ///< of windows that were closed
    bool m_closing = false;                  ///< lastWindowClosed has been asked for
};

} // namespace halvane
