// SPDX-License-Identifier: MIT
// What the location of a list's entry can mean. Pure. `file` is the list's standardized path.
#pragma once

#include <QString>

#include <vector>

namespace halvane {

/// A longer location is no path, even where each of its bytes takes three.
inline constexpr qsizetype longestLocation = 16'000; // bytes

/// Whether it leads to a network or to another machine.
bool isAddress(const QString& location);

/// Of M3U: a path of this system or another, or a URL of a file.
std::vector<QString> pathsOfText(const QString& location, const QString& file);

/// Of XSPF: a URI, also a relative one. Careless programs put a plain path there.
std::vector<QString> pathsOfUri(const QString& location, const QString& file);

} // namespace halvane
