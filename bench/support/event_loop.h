// SPDX-License-Identifier: MIT
#pragma once

#include <QCoreApplication>

namespace halvane::bench {

/// Runs the event loop until something is reached, asleep while there is no event.
template<typename Reached>
void until(const Reached& reached) {
    while (!reached())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
}

} // namespace halvane::bench
