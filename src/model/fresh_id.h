// SPDX-License-Identifier: MIT
#pragma once

#include <QUuid>

namespace halvane {

/// A new random identity (UUID version 4). Each thread has a generator that the system has seeded,
/// because asking the processor for every identity takes a third of the time of restoring a large
/// library. Any thread.
QUuid freshId();

} // namespace halvane
