// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <functional>
#include <memory>

namespace halvane {

/// A pending call of a Clock; destroying it cancels the call. Main thread.
class Timer {
  public:
    virtual ~Timer() = default;
};

/// Time and timers, so that tests can hold the hands. now() and wallTime() may be called from any
/// thread; timers belong to the main thread, and their actions run there.
class Clock {
  public:
    virtual ~Clock() = default;
    /// Seconds on a clock that never jumps.
    [[nodiscard]] virtual double now() const = 0;
    /// Seconds since 1970-01-01 UTC.
    [[nodiscard]] virtual double wallTime() const = 0;
    /// Runs the action once after the delay.
    [[nodiscard]] virtual std::unique_ptr<Timer> after(std::chrono::milliseconds delay,
                                                       std::function<void()> action) = 0;
    /// Runs the action again and again, the first time after one interval.
    [[nodiscard]] virtual std::unique_ptr<Timer> every(std::chrono::milliseconds interval,
                                                       std::function<void()> action) = 0;
};

} // namespace halvane
