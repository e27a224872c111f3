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

/// Sets HOME where it is missing, as the password database has it, and forgets XDG folders that are
/// no absolute paths, which the base directory specification tells to ignore. Before anything asks
/// for a folder, and before there are threads.
void mendFolderVariables();

} // namespace halvane
