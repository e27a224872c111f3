// SPDX-License-Identifier: MIT
#pragma once

#include <cstdio>
#include <cstdlib>

#ifdef __SANITIZE_ADDRESS__
#include <sanitizer/lsan_interface.h>
#endif

namespace halvane::test {

/// Ends a test program as Halvane itself ends: a job that a disk holds up is left behind, and must
/// not meet libraries that are being unloaded. Leaks are looked for all the same.
[[noreturn]] inline void endProgram(int result) {
    std::fflush(nullptr);
#ifdef __SANITIZE_ADDRESS__
    __lsan_do_leak_check();
#endif
    std::_Exit(result);
}

} // namespace halvane::test
