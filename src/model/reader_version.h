// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>

namespace halvane {

/// Which generation of the readers made a record of a file. It grows when they read more than
/// before, or otherwise. Files whose records are older are then read again.
///   0: records that do not say, and unfinished ones
///   1: album artists, disc and track numbers, sort names
///   2: the lengths that are played, pictures by their kind, tags before and behind odd ones
inline constexpr quint8 currentReaderVersion = 2;

/// Of a record whose length is a guess, because counting it would have kept an import waiting.
inline constexpr quint8 unfinishedRecord = 0;

} // namespace halvane
