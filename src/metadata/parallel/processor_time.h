// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <ctime>

namespace halvane {

/// The processor time that a thread has used so far; the calling one's by default. None for a
/// thread that is no more.
inline std::chrono::nanoseconds processorTime(clockid_t thread = CLOCK_THREAD_CPUTIME_ID) {
    timespec used{};
    if (::clock_gettime(thread, &used) != 0)
        return {};
    return std::chrono::seconds(used.tv_sec) + std::chrono::nanoseconds(used.tv_nsec);
}

} // namespace halvane
