// SPDX-License-Identifier: MIT
#pragma once

namespace halvane {

/// Keeps the machine from suspending while music plays; never touches the screen lock. Main thread.
class SleepInhibitor {
  public:
    virtual ~SleepInhibitor() = default;
    virtual void setInhibited(bool inhibited) = 0;
};

} // namespace halvane
