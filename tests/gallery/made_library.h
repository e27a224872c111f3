// SPDX-License-Identifier: MIT
#pragma once

#include "library/catalog/library_store.h"

#include <QString>

namespace halvane::test {

/// What the made-up library is to hold.
struct LibraryPlan {
    int albums = 312;
    QString folder;       ///< its files are made here
    bool playable = true; ///< the first album's files hold sound; the others are empty
    bool hasCovers = true;
};

/// Tracks with names as they are met in real libraries: English, Chinese, right-to-left, emoji,
/// very long and missing ones, with painted covers; the same for the same plan. The first album is
/// "Night Walk" by The Lanterns.
TrackRows makeLibrary(const LibraryPlan& plan);

/// The path of a track of the first album, from 0.
QString firstAlbumPath(const LibraryPlan& plan, int track);

} // namespace halvane::test
