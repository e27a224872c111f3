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
QString downloadingTrack(const QString& trackTitle, ResolvedLanguage language);
QString maintenanceBadge(qint64 count, ResolvedLanguage language);
QString artistSummary(qint64 albums, qint64 tracks, ResolvedLanguage language);
QString visibleCount(qint64 count, ResolvedLanguage language);
QString confirmRemoveMissing(qint64 count, ResolvedLanguage language);
QString confirmRemoveDuplicates(qint64 groups, ResolvedLanguage language);
QString cloudDownloadStarted(qint64 count, ResolvedLanguage language);
QString playlistCount(qint64 count, ResolvedLanguage language);
/// Tracks added to a playlist; skipped ones were there already.
QString importResult(qint64 added, qint64 skipped, ResolvedLanguage language);
QString albumDuration(qint64 totalMinutes, ResolvedLanguage language);
QString trackCount(qint64 count, ResolvedLanguage language);

/// What a language is called where the user picks one.
QString languageName(AppLanguage setting, ResolvedLanguage language);

} // namespace L10n

} // namespace halvane
