// SPDX-License-Identifier: MIT
#pragma once

namespace halvane {

/// Asks that the calling thread runs ahead of ordinary ones, so that a machine that is busy does
/// not make holes in the sound: directly where the limits allow it, else by RealtimeKit. Where
/// neither does, nothing changes. May wait for the system's message bus to be reached.
void preferThisThread();

} // namespace halvane
