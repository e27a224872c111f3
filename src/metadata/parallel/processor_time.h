// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <ctime>

namespace halvane {

/// The processor time that a thread has used, by default the calling one. Zero for a thread that
/// has ended.
inline std::chrono::nanoseconds processorTime(clockid_t thread = CLOCK_THREAD_CPUTIME_ID) {
    timespec used{};
    if (::clock_gettime(thread, &used) != 0)
        return {};
    return std::chrono::seconds(used.tv_sec) + std::chrono::nanoseconds(used.tv_nsec);
}

} // namespace halvane
