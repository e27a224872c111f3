// SPDX-License-Identifier: MIT
// What a listener has said of tracks, and the rules by which it follows their sound. Pure, any
// thread.
#pragma once

#include "model/said_tags.h"

#include <QHash>
#include <QString>
#include <QUuid>

#include <functional>
#include <optional>
#include <vector>

namespace halvane {

/// What the user has said of one track.
struct Said {
    bool isLoved = false;
    qint64 rating = 0;
    qint64 plays = 0;
    qint64 lastPlayed = 0; ///< whole seconds since 2001-01-01 UTC; 0: not known

    bool operator==(const Said&) const = default;
};

/// Both: loved where either is, the better rating, the more plays, and the last of them. Two notes
/// of one sound tell of the same plays more often than of different ones, and to add them up twice
/// would be worse than to lose some. Joining again changes nothing.
Said joined(const Said& one, const Said& other);

/// What is noted of a sound once the user has said something of a track that has it.
Said followed(const Said& noted, const Said& before, const Said& after);

/// What is said of a path from now on whose file holds another sound than before. What is known of
/// the new sound counts. If nothing is, the path keeps its own, since the file may have been
/// encoded anew; unless the sound that it had has gone elsewhere.
Said saidOfReplaced(const Said& ofPath, const std::optional<Said>& ofSound, bool hasOldGone);

/// What is said of a sound that nothing is noted of: what was said before it was identified, and
/// what other programs have written into the tags. A rating that the user gave goes first. Plays
/// add up, for those in the tags were elsewhere.
Said withTags(Said said, const SaidTags& tags);

/// What is kept of a sound.
struct SoundNote {
    Said said;
    /// As Sound Check measured it; empty if it has not.
    std::vector<double> loudness;

    bool operator==(const SoundNote&) const = default;
};

/// The stored form: loved (0 or 1), rating, plays, and behind them the loudness if it is known.
/// When it was last played is stored for itself: what stands behind the plays is the loudness to
/// earlier versions.
std::vector<double> storedNote(const SoundNote& note);
/// None where the numbers make no sense.
std::optional<SoundNote> noteFromStored(const std::vector<double>& numbers);

/// A playlist's paths with others in the place of those that have a stand-in. A path that the
/// playlist holds already takes the place of none. None if nothing changes.
std::optional<std::vector<QString>>
withStandIns(const std::vector<QString>& paths,
             const std::function<std::optional<QString>(const QString& path)>& standIn);

} // namespace halvane
