// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace halvane {

// The program's folders by the XDG base directory specification.

/// What was read of the library.
QString dataFolder();
/// What can be made again at any time.
QString cacheFolder();
/// What is about this desktop and not a preference.
QString stateFolder();

} // namespace halvane
