// SPDX-License-Identifier: MIT
#pragma once

#include "platform/clock.h"

namespace halvane {

/// The machine's clock, with timers of the event loop.
class SystemClock final : public Clock {
  public:
    [[nodiscard]] double now() const override;
    [[nodiscard]] double wallTime() const override;
    std::unique_ptr<Timer> after(std::chrono::milliseconds delay,
                                 std::function<void()> action) override;
    std::unique_ptr<Timer> every(std::chrono::milliseconds interval,
                                 std::function<void()> action) override;
};

} // namespace halvane
