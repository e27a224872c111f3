// SPDX-License-Identifier: MIT
#include "presentation/strings.h"

namespace halvane {

QString Strings::playbackFailure(const QString& trackTitle) const {
    return L10n::playbackFailure(trackTitle, m_language());
}

QString Strings::downloadingTrack(const QString& trackTitle) const {
    return L10n::downloadingTrack(trackTitle, m_language());
}

QString Strings::maintenanceBadge(qint64 count) const {
    return L10n::maintenanceBadge(count, m_language());
}

QString Strings::artistSummary(qint64 albums, qint64 tracks) const {
    return L10n::artistSummary(albums, tracks, m_language());
}

QString Strings::visibleCount(qint64 count) const {
    return L10n::visibleCount(count, m_language());
}

QString Strings::confirmRemoveMissing(qint64 count) const {
    return L10n::confirmRemoveMissing(count, m_language());
}

QString Strings::confirmRemoveDuplicates(qint64 groups) const {
    return L10n::confirmRemoveDuplicates(groups, m_language());
}

QString Strings::cloudDownloadStarted(qint64 count) const {
    return L10n::cloudDownloadStarted(count, m_language());
}

QString Strings::playlistCount(qint64 count) const {
    return L10n::playlistCount(count, m_language());
}

QString Strings::importResult(qint64 added, qint64 skipped) const {
    return L10n::importResult(added, skipped, m_language());
}

QString Strings::albumDuration(qint64 totalMinutes) const {
    return L10n::albumDuration(totalMinutes, m_language());
}

QString Strings::trackCount(qint64 count) const {
    return L10n::trackCount(count, m_language());
}

QString Strings::languageName(AppLanguage setting) const {
    return L10n::languageName(setting, m_language());
}

} // namespace halvane
