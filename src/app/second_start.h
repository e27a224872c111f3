// SPDX-License-Identifier: MIT
#pragma once

#include "platform/session/single_instance.h"

namespace halvane {

/// Leaves what a start of the program was asked to do to the instance that already runs; false when
/// there is none and this one is to do it. Where there is no telling, because the other or the
/// session's bus does not answer, it says so on standard error and ends the process with failure:
/// two instances would work on one library. To be called while SIGTERM and its like have their
/// ordinary effect, since it may wait for a minute. Main thread.
bool leftToAnother(const StartRequest& request);

} // namespace halvane
