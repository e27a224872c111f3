// SPDX-License-Identifier: MIT
#include "support/manual_clock.h"

#include <algorithm>

namespace halvane::test {

class ManualClock::Handle final : public Timer {
  public:
    Handle(ManualClock& clock, std::shared_ptr<Pending> pending)
        : m_clock(clock)
        , m_pending(std::move(pending)) {}
    ~Handle() override { m_clock.m_pending.remove(m_pending); }

  private:
    ManualClock& m_clock;
    std::shared_ptr<Pending> m_pending;
};

std::unique_ptr<Timer> ManualClock::add(double delay, double interval,
                                        std::function<void()> action) {
    m_pending.push_back(
        std::make_shared<Pending>(Pending{m_now + delay, interval, std::move(action)}));
    return std::make_unique<Handle>(*this, m_pending.back());
}

std::unique_ptr<Timer> ManualClock::after(std::chrono::milliseconds delay,
                                          std::function<void()> action) {
    return add(std::chrono::duration<double>(delay).count(), 0, std::move(action));
}

std::unique_ptr<Timer> ManualClock::every(std::chrono::milliseconds interval,
                                          std::function<void()> action) {
    const double seconds = std::chrono::duration<double>(interval).count();
    return add(seconds, seconds, std::move(action));
}

void ManualClock::advance(std::chrono::milliseconds time) {
    // Sums of decimal fractions of a second must not miss a timer by one bit.
    constexpr double slack = 1e-9;
    const double end = m_now + std::chrono::duration<double>(time).count();
    for (;;) {
        const auto next = std::min_element(m_pending.begin(), m_pending.end(),
                                           [](auto& a, auto& b) { return a->due < b->due; });
        if (next == m_pending.end() || (*next)->due > end + slack)
            break;
        const auto pending = *next; // kept alive while its action runs
        m_now = std::max(m_now, pending->due);
        if (pending->interval > 0)
            pending->due += pending->interval;
        else
            m_pending.erase(next);
        pending->action();
    }
    m_now = end;
}

} // namespace halvane::test
