// SPDX-License-Identifier: MIT
#pragma once

#include "library/browsing/row_state.h"
#include "model/track.h"

#include <QHash>
#include <QVariant>

/// What the track table and the play queue both show of a track. Main thread.
namespace halvane::TrackRole {

enum : int {
    title = Qt::UserRole + 1, ///< title
    artist,                   ///< artist
    album,                    ///< album
    quality,                  ///< quality: text
    duration,                 ///< duration: text
    path,                     ///< path: standardized
    isLoved,                  ///< isLoved
    rating,                   ///< rating: 0...5
    availability,             ///< availability: TrackAvailability
    coverKey,                 ///< coverKey: for the cover store
    firstOwn,                 ///< the first of the roles that one list has alone
};

/// The value of one of these roles, and of Qt::DisplayRole; invalid for any other role.
QVariant value(const Track& track, int role, const RowState& state);

QHash<int, QByteArray> names();

} // namespace halvane::TrackRole
