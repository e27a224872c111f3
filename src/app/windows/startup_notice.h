// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace halvane {

/// Ends the busy cursor that a launcher shows on X11 until the program it started has a window. A
/// start that is left to a running program shows none. Does nothing elsewhere and for an empty id.
/// The message is that of freedesktop.org's startup notification protocol. Main thread.
void endStartupNotice(const QString& startupId);

} // namespace halvane
