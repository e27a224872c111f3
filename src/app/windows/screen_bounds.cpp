// SPDX-License-Identifier: MIT
#include "app/windows/screen_bounds.h"

#include "app/windows/window_placement.h"

#include <QGuiApplication>
#include <QScreen>
#include <QWindow>

namespace halvane {

ScreenBounds::ScreenBounds(QWindow* window, QSize leastSize)
    : QObject(window)
    , m_window(window)
    , m_leastSize(leastSize) {
    connect(window, &QWindow::screenChanged, this, &ScreenBounds::follow);
    follow(window->screen());
}

void ScreenBounds::follow(QScreen* screen) {
    const bool wasUnplugged = m_screen && !QGuiApplication::screens().contains(m_screen);
    disconnect(m_areaChanged);
    m_screen = screen;
    if (!screen)
        return;
    m_areaChanged = connect(screen, &QScreen::availableGeometryChanged, this, [this] {
        boundLeastSize();
        shrink();
    });
    boundLeastSize();
    // A window that is dragged to a smaller screen keeps its size: it may be on its way back.
    if (wasUnplugged)
        shrink();
}

void ScreenBounds::boundLeastSize() {
    m_window->setMinimumSize(m_leastSize.boundedTo(m_window->screen()->availableSize()));
}

void ScreenBounds::shrink() {
    const QRect place = m_window->geometry();
    const QRect fitted = fittedInto(m_window->screen()->availableGeometry(), place);
    if (m_window->windowState() == Qt::WindowNoState && fitted.size() != place.size())
        m_window->setGeometry(fitted);
}

} // namespace halvane
