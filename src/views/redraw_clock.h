// SPDX-License-Identifier: MIT
#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>
#include <QtQml/qqmlregistration.h>

namespace halvane::views {

/// Ticks at most 30 times a second while it runs: slower than the display, so that a moving picture
/// costs half of what an animation in step with the display would. Main thread.
class RedrawClock : public QObject {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(bool running READ isRunning WRITE setRunning NOTIFY runningChanged)

  public:
    explicit RedrawClock(QObject* parent = nullptr)
        : QObject(parent) {
        m_timer.setTimerType(Qt::PreciseTimer);
        m_timer.setInterval(34);
        connect(&m_timer, &QTimer::timeout, this, [this] {
            const double seconds = double(m_sinceTick.nsecsElapsed()) / 1e9;
            m_sinceTick.start();
            Q_EMIT ticked(seconds);
        });
    }

    bool isRunning() const { return m_timer.isActive(); }
    void setRunning(bool running) {
        if (running == isRunning())
            return;
        m_sinceTick.start();
        running ? m_timer.start() : m_timer.stop();
        Q_EMIT runningChanged();
    }

  Q_SIGNALS:
    void runningChanged();
    /// Seconds since the tick before, or since it was started.
    void ticked(double seconds);

  private:
    QTimer m_timer;
    QElapsedTimer m_sinceTick;
};

} // namespace halvane::views
