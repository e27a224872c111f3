// SPDX-License-Identifier: MIT
#pragma once

#include "platform/clock.h"

#include <list>

namespace halvane::test {

/// A clock that stands still until it is told to move; timers fire, in order, while it moves.
class ManualClock final : public Clock {
  public:
    [[nodiscard]] double now() const override { return m_now; }
    [[nodiscard]] double wallTime() const override { return m_wallStart + m_now; }
    std::unique_ptr<Timer> after(std::chrono::milliseconds delay,
                                 std::function<void()> action) override;
    std::unique_ptr<Timer> every(std::chrono::milliseconds interval,
                                 std::function<void()> action) override;

    /// Moves the hands, stopping at every timer that falls due on the way.
    void advance(std::chrono::milliseconds time);
    /// How many timers are waiting.
    [[nodiscard]] std::size_t pendingTimers() const { return m_pending.size(); }

  private:
    struct Pending {
        double due;
        double interval; ///< 0 for a single shot
        std::function<void()> action;
    };
    class Handle;
    std::unique_ptr<Timer> add(double delay, double interval, std::function<void()> action);

    double m_now = 0;
    double m_wallStart = 1'700'000'000;
    std::list<std::shared_ptr<Pending>> m_pending;
};

} // namespace halvane::test
