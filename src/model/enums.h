// SPDX-License-Identifier: MIT
// The small enumerations of the model. Their names are also the texts under which they are stored.
#pragma once

#include <QObject>

namespace halvane {

Q_NAMESPACE

/// What the library content shows.
enum class LibraryMode { albums, songs, artists };
Q_ENUM_NS(LibraryMode)

/// From recentlyAdded on they are live lists: four that every library has, and those of the user.
enum class SidebarItem {
    library,
    albums,
    artists,
    tracks,
    loved,
    recentlyAdded,
    recentlyPlayed,
    mostPlayed,
    topRated,
    liveList,
};
Q_ENUM_NS(SidebarItem)

/// The order of the artists: by the characters' codes, or as the reader's language sorts names.
enum class ArtistOrder { plain, readers };
Q_ENUM_NS(ArtistOrder)

enum class PlaybackRepeatMode { off, all, one };
Q_ENUM_NS(PlaybackRepeatMode)

/// Which colour the spectrum, or the accent, takes.
enum class SpectrumTintMode { ambient, mint, gold, sunset, custom };
Q_ENUM_NS(SpectrumTintMode)

enum class CornerStyle { sharp, standard, round };
Q_ENUM_NS(CornerStyle)

enum class BackgroundStyle { dark, oled, ambient };
Q_ENUM_NS(BackgroundStyle)

/// A column of the track table, by which it can be sorted. `library` is no column: it stands for
/// the order that the tracks have by themselves where they are shown.
enum class TrackOrder {
    library,
    title,
    artist,
    album,
    quality,
    time,
    number,
    genre,
    year,
    plays,
    rating,
    added,
    path
};
Q_ENUM_NS(TrackOrder)

/// By what a live list goes: the library's order, or the greatest number first, which is a date in
/// `added` and `played`.
enum class LiveOrder { library, added, played, plays, rating, year };
Q_ENUM_NS(LiveOrder)

/// How tracks are brought to one level: by their mean level, as Sound Check does, or by their
/// loudness, each on its own or, where an album plays, the album as a whole.
enum class LevelBy { soundCheck, track, album };
Q_ENUM_NS(LevelBy)

/// Whether a track's file can be played now.
enum class TrackAvailability { available, inCloud, missing };
Q_ENUM_NS(TrackAvailability)

/// The user's choice of language, in the order in which the settings offer it.
enum class AppLanguage { english, simplifiedChinese, system };
Q_ENUM_NS(AppLanguage)

/// The language that texts are shown in.
enum class ResolvedLanguage { english, simplifiedChinese };
Q_ENUM_NS(ResolvedLanguage)

} // namespace halvane
