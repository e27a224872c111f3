// SPDX-License-Identifier: MIT
#pragma once

namespace halvane::test {

/// While armed, the calling thread ends the program, naming the offence, when it allocates or frees
/// memory, takes a lock, waits, or makes any system call: what an audio callback must never do.
/// Link realtime_trap to a test to have it; it puts itself before the C library's functions.
class RealtimeTrap {
  public:
    static void arm();
    static void disarm();
    /// Whether memory and locks are watched: not in a build whose sanitizer watches them itself.
    static bool watchesMemoryAndLocks();
    /// Whether system calls are watched: where the kernel can hand them to the program.
    static bool watchesSystemCalls();
};

} // namespace halvane::test
