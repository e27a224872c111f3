// SPDX-License-Identifier: MIT
// Every text that windows, alerts, the status line and notifications show, in two languages. Menus
// use the English text. Pure lookups; any thread.
#pragma once

#include "model/enums.h"
#include "presentation/l10n_table.h"

#include <QString>

namespace halvane {

class PreferredLanguages;

/// What a fixed text says. The numbers follow the table.
enum class L10nKey {
#define HALVANE_L10N_KEY(key, english, chinese) key,
    HALVANE_L10N_TABLE(HALVANE_L10N_KEY)
#undef HALVANE_L10N_KEY
};

/// The language that the system asks for: Simplified Chinese when the most preferred tag begins
/// with "zh" (Traditional Chinese included, on purpose), otherwise English.
ResolvedLanguage systemResolved(const PreferredLanguages& system);

/// The language of a setting. The system is asked each time.
ResolvedLanguage resolved(AppLanguage setting, const PreferredLanguages& system);

namespace L10n {

/// How many keys there are.
inline constexpr int keyCount = 0
#define HALVANE_L10N_KEY(key, english, chinese) +1 // NOLINT(bugprone-macro-parentheses): a summand
    HALVANE_L10N_TABLE(HALVANE_L10N_KEY)
#undef HALVANE_L10N_KEY
    ;

/// A fixed text; empty for a number that is no key.
QString text(L10nKey key, ResolvedLanguage language);

// Sentences with a title or numbers in them. Numbers are plain decimal integers. The English
// singular, where there is one, is for exactly 1.

QString playbackFailure(const QString& trackTitle, ResolvedLanguage language);
QString waitingForDisk(const QString& trackTitle, ResolvedLanguage language);
QString diskDoesNotAnswer(const QString& trackTitle, ResolvedLanguage language);
QString downloadingTrack(const QString& trackTitle, ResolvedLanguage language);
// Tracks, and the title that names them where it is one.
QString playsNext(const QString& trackTitle, qint64 count, ResolvedLanguage language);
QString addedToQueue(const QString& trackTitle, qint64 count, ResolvedLanguage language);
QString removedFromQueue(const QString& trackTitle, qint64 count, ResolvedLanguage language);
QString removedFromLibrary(const QString& trackTitle, qint64 count, ResolvedLanguage language);
QString removedFromPlaylist(const QString& trackTitle, qint64 count, const QString& name,
                            ResolvedLanguage language);
QString deletedPlaylist(const QString& name, ResolvedLanguage language);
QString deletedLiveList(const QString& name, ResolvedLanguage language);
QString savedAsPlaylist(const QString& name, ResolvedLanguage language);
QString maintenanceBadge(qint64 count, ResolvedLanguage language);
QString artistSummary(qint64 albums, qint64 tracks, ResolvedLanguage language);
/// Of an artist who is only heard on albums of others.
QString guestSummary(qint64 albums, ResolvedLanguage language);
QString visibleCount(qint64 count, ResolvedLanguage language);
QString selectedCount(qint64 count, ResolvedLanguage language);
/// The heading of one disc of an album.
QString discHeading(qint64 disc, ResolvedLanguage language);
QString confirmRemoveMissing(qint64 count, ResolvedLanguage language);
QString confirmRemoveDuplicates(qint64 groups, ResolvedLanguage language);
QString cloudDownloadStarted(qint64 count, ResolvedLanguage language);
QString playlistCount(qint64 count, ResolvedLanguage language);
/// Files of the library that are in other places now.
QString foundElsewhere(qint64 count, ResolvedLanguage language);
/// New files of followed folders.
QString takenIn(qint64 count, ResolvedLanguage language);
/// Tracks added to a playlist; skipped ones were there already.
QString importResult(qint64 added, qint64 skipped, ResolvedLanguage language);
/// What an import has done, and how many files of music it has left out because they are of kinds
/// that can't be played.
QString withLeftOut(const QString& message, qint64 leftOut, ResolvedLanguage language);
/// The same with the names of the files that are not there. The message may be empty.
QString withMissing(const QString& message, const QStringList& names, ResolvedLanguage language);
/// Lists that have become playlists, the name being that of a single one, and how many of all their
/// entries were not found or lie on a network.
QString addedPlaylists(const QStringList& names, qint64 notFound, qint64 entries, qint64 addresses,
                       ResolvedLanguage language);
QString playlistUnreadable(const QString& fileName, ResolvedLanguage language);
QString exportedPlaylist(const QString& name, ResolvedLanguage language);
QString playlistNotWritten(const QString& fileName, ResolvedLanguage language);
QString exportedListening(qint64 tracks, ResolvedLanguage language);
/// Of tracks that are in the library, and of others for when they come.
QString importedListening(qint64 found, qint64 away, ResolvedLanguage language);
QString listeningNotRead(const QString& fileName, ResolvedLanguage language);
/// An import that the user has stopped, after so many tracks.
QString importStopped(qint64 added, ResolvedLanguage language);
/// How far an import is that reads this part of its files, from 0 to 1.
QString importReading(double part, ResolvedLanguage language);
/// After how many minutes playback pauses; 0: it goes on.
QString sleepTimer(qint64 minutes, ResolvedLanguage language);
/// Whether playback stops after the current track.
QString stopsAfterCurrent(bool stops, ResolvedLanguage language);
/// A time in its two largest units.
QString timeSpan(qint64 minutes, ResolvedLanguage language);
/// How many tracks come after the current one.
QString tracksLeft(qint64 count, ResolvedLanguage language);
QString albumDuration(qint64 totalMinutes, ResolvedLanguage language);
/// The same of a time that may be shorter than a minute, which is given in seconds.
QString albumLength(double seconds, ResolvedLanguage language);
/// What a button says that gives a track its heart.
QString loveTrack(const QString& trackTitle, ResolvedLanguage language);
/// The name of a command without the dots that announce its dialog.
QString dialogTitle(const QString& command);
QString trackCount(qint64 count, ResolvedLanguage language);

/// What a language is called where the user picks one.
QString languageName(AppLanguage setting, ResolvedLanguage language);
/// What an item of the sidebar is called.
L10nKey placeName(SidebarItem item);

} // namespace L10n

} // namespace halvane
