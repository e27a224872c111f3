// SPDX-License-Identifier: MIT
#pragma once

#include "platform/session/single_instance.h"

namespace halvane {

/// Hands what this start was asked to do to the instance that already runs; false when none runs.
/// Where that cannot be told, because the other instance or the session's bus does not answer, it
/// says so on standard error and ends the process with failure: two instances would work on one
/// library. It may wait for a minute: call it while SIGTERM and its like still end the process.
/// Main thread.
bool leftToAnother(const StartRequest& request);

/// The properties of the player of the instance that runs. Says so on standard error and ends the
/// process with failure when none runs, or when it does not tell. Main thread.
QVariantMap runningPlayer();

} // namespace halvane
