// SPDX-License-Identifier: MIT
#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>
#include <QtQml/qqmlregistration.h>

#include <algorithm>

namespace halvane::views {

/// Ticks at its interval (ms) while it runs, at most 30 times a second: slower than the display, so
/// that a moving picture costs half of what an animation in step with the display would. Main
/// thread.
class RedrawClock : public QObject {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(bool running READ isRunning WRITE setRunning NOTIFY runningChanged)
    Q_PROPERTY(int interval READ interval WRITE setInterval NOTIFY intervalChanged)

  public:
    explicit RedrawClock(QObject* parent = nullptr)
        : QObject(parent) {
        m_timer.setTimerType(Qt::PreciseTimer);
        m_timer.setInterval(shortest);
        connect(&m_timer, &QTimer::timeout, this, [this] {
            const double seconds = static_cast<double>(m_sinceTick.nsecsElapsed()) / 1e9;
            m_sinceTick.start();
            Q_EMIT ticked(seconds);
        });
    }

    [[nodiscard]] bool isRunning() const { return m_timer.isActive(); }
    void setRunning(bool running) {
        if (running == isRunning())
            return;
        m_sinceTick.start();
        running ? m_timer.start() : m_timer.stop();
        Q_EMIT runningChanged();
    }

    [[nodiscard]] int interval() const { return m_timer.interval(); }
    void setInterval(int milliseconds) {
        const int interval = std::max(shortest, milliseconds);
        if (interval == m_timer.interval())
            return;
        m_timer.setInterval(interval);
        Q_EMIT intervalChanged();
    }

  Q_SIGNALS:
    void runningChanged();
    void intervalChanged();
    /// Seconds since the tick before, or since it was started.
    void ticked(double seconds);

  private:
    static constexpr int shortest = 34;

    QTimer m_timer;
    QElapsedTimer m_sinceTick;
};

} // namespace halvane::views
