// SPDX-License-Identifier: MIT
// Everything that a listener has said, as one file for another machine or another player. Its form
// is told in docs/listening-data.md. Pure; any thread.
#pragma once

#include "library/catalog/library_store.h"
#include "library/user/said.h"
#include "model/playlist.h"
#include "platform/preferences/preference_value.h"

#include <QByteArray>
#include <QSet>
#include <QStringList>

namespace halvane {

/// What was said of one track. Of one that has left the library, only its sound is known.
struct SaidEntry {
    QString path;
    SoundIdentity identity;
    QString title;
    QString artist;
    QString album;
    Said said;

    bool operator==(const SaidEntry&) const = default;
};

struct SaidPlaylist {
    QString name;
    QStringList paths;

    bool operator==(const SaidPlaylist&) const = default;
};

struct SaidFile {
    std::vector<SaidEntry> tracks; ///< also those that are only in a playlist
    std::vector<SaidPlaylist> playlists;

    [[nodiscard]] QByteArray toJson() const;
    /// None for anything else than such a file. What makes no sense in it is left out.
    static std::optional<SaidFile> fromJson(const QByteArray& json);

    bool operator==(const SaidFile&) const = default;
};

/// What was said, by path and by sound.
struct AllSaid {
    QSet<QString> loved;
    IntegerMap ratings;
    IntegerMap plays;
    IntegerMap lastPlayed;
    QHash<SoundIdentity, Said> ofSounds;
};

/// The file of all that was said of these tracks, in their order, and of sounds that have left.
SaidFile saidFileOf(const TrackRows& rows, const AllSaid& said,
                    const std::vector<Playlist>& playlists);

/// Where in a library the entries of a file belong.
struct SaidPlan {
    std::vector<std::pair<QString, Said>> ofPaths;
    std::vector<std::pair<SoundIdentity, Said>> ofSounds; ///< whether they are there or not
    std::vector<SaidPlaylist> playlists;                  ///< with the paths that tracks have here
    qint64 found = 0;                                     ///< entries whose tracks are there
    qint64 away = 0;                                      ///< and those whose are not
};

/// An entry is of every track with its sound. Where that is not known, it is of the track at its
/// path, unless another sound is there. A play after `now`, in seconds since 2001-01-01 UTC, has no
/// date: it would stand before all others for good.
SaidPlan saidPlanOf(SaidFile file, const TrackRows& rows, qint64 now);

} // namespace halvane
