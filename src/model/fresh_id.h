// SPDX-License-Identifier: MIT
#pragma once

#include <QUuid>

namespace halvane {

/// A new random identity (UUID version 4). Drawn from a generator of this thread's own that the
/// system has seeded: asking the processor for every one would take a third of the time in which a
/// large library is restored. Any thread.
QUuid freshId();

} // namespace halvane
