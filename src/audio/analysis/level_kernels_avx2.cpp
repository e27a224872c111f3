// SPDX-License-Identifier: MIT
// Compiled with AVX2 and FMA, and so called only where the processor has both.
#include "audio/analysis/level_loops.h"

namespace halvane {

const LevelKernels avx2LevelKernels = theseKernels;

} // namespace halvane
