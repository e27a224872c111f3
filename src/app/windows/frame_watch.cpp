// SPDX-License-Identifier: MIT
#include "app/windows/frame_watch.h"

#include <QEvent>
#include <QWindow>

namespace halvane {

namespace {

constexpr int leastTitleBar = 12; // a line around an undecorated window is no title bar

} // namespace

void FrameWatch::follow(QWindow* window) {
    window->installEventFilter(this);
}

bool FrameWatch::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() != QEvent::Expose && event->type() != QEvent::FocusIn)
        return false;
    const auto* window = static_cast<QWindow*>(watched);
    if (!window->isExposed() || !(window->flags() & Qt::FramelessWindowHint))
        return false;
    const bool framed = window->frameMargins().top() >= leastTitleBar;
    if (framed != m_hasSystemFrame) {
        m_hasSystemFrame = framed;
        Q_EMIT changed();
    }
    return false;
}

} // namespace halvane
