// SPDX-License-Identifier: MIT
#include "platform/system_clock.h"

#include <QTimer>

namespace halvane {

namespace {

class LoopTimer final : public Timer {
  public:
    LoopTimer(std::chrono::milliseconds interval, bool once, std::function<void()> action)
        : m_action(std::move(action)) {
        m_timer.setSingleShot(once);
        // Half-second ticks may drift together with others; short waits are kept exact.
        m_timer.setTimerType(interval >= std::chrono::milliseconds(500) ? Qt::CoarseTimer
                                                                        : Qt::PreciseTimer);
        // The action may destroy this timer, so it runs from a copy.
        QObject::connect(&m_timer, &QTimer::timeout, [this] {
            auto run = m_action;
            run();
        });
        m_timer.start(interval);
    }

  private:
    std::function<void()> m_action;
    QTimer m_timer;
};

double seconds(auto time) {
    return std::chrono::duration<double>(time.time_since_epoch()).count();
}

} // namespace

double SystemClock::now() const {
    return seconds(std::chrono::steady_clock::now());
}

double SystemClock::wallTime() const {
    return seconds(std::chrono::system_clock::now());
}

std::unique_ptr<Timer> SystemClock::after(std::chrono::milliseconds delay,
                                          std::function<void()> action) {
    return std::make_unique<LoopTimer>(delay, true, std::move(action));
}

std::unique_ptr<Timer> SystemClock::every(std::chrono::milliseconds interval,
                                          std::function<void()> action) {
    return std::make_unique<LoopTimer>(interval, false, std::move(action));
}

} // namespace halvane
