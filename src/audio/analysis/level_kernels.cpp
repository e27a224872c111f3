// SPDX-License-Identifier: MIT
#include "audio/analysis/level_kernels.h"

#include "audio/analysis/level_loops.h"

namespace halvane {

const LevelKernels plainLevelKernels = theseKernels;

const LevelKernels& levelKernels() {
#ifdef __x86_64__
    static const bool isWide = __builtin_cpu_supports("avx2") && __builtin_cpu_supports("fma");
    return isWide ? avx2LevelKernels : plainLevelKernels;
#else
    return plainLevelKernels;
#endif
}

} // namespace halvane
