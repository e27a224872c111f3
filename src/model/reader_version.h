// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>

namespace halvane {

/// Which generation of the readers made a record of a file. It grows when they read more than
/// before, or otherwise. Files whose records are older are then read again.
///   0: records that do not say, and unfinished ones
///   1: album artists, disc and track numbers, sort names
///   2: the lengths that are played, pictures by their kind, tags before and behind odd ones
///   3: identities of sounds
///   4: gains and peaks, lengths of files that were joined
///   5: ratings and play counts
inline constexpr quint8 currentReaderVersion = 5;

/// Of a record that lacks what would have kept an import waiting: its length is a guess, or its
/// sound is not identified.
inline constexpr quint8 unfinishedRecord = 0;

} // namespace halvane
