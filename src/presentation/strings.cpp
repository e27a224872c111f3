// SPDX-License-Identifier: MIT
#include "presentation/strings.h"

namespace halvane {

QString Strings::playbackFailure(const QString& trackTitle) const {
    return L10n::playbackFailure(trackTitle, m_language());
}

QString Strings::downloadingTrack(const QString& trackTitle) const {
    return L10n::downloadingTrack(trackTitle, m_language());
}

QString Strings::maintenanceBadge(int count) const {
    return L10n::maintenanceBadge(count, m_language());
}

QString Strings::artistSummary(int albums, int tracks) const {
    return L10n::artistSummary(albums, tracks, m_language());
}

QString Strings::visibleCount(int count) const {
    return L10n::visibleCount(count, m_language());
}

QString Strings::confirmRemoveMissing(int count) const {
    return L10n::confirmRemoveMissing(count, m_language());
}

QString Strings::confirmRemoveDuplicates(int groups) const {
    return L10n::confirmRemoveDuplicates(groups, m_language());
}

QString Strings::cloudDownloadStarted(int count) const {
    return L10n::cloudDownloadStarted(count, m_language());
}

QString Strings::playlistCount(int count) const {
    return L10n::playlistCount(count, m_language());
}

QString Strings::importResult(int added, int skipped) const {
    return L10n::importResult(added, skipped, m_language());
}

QString Strings::albumDuration(int totalMinutes) const {
    return L10n::albumDuration(totalMinutes, m_language());
}

QString Strings::trackCount(int count) const {
    return L10n::trackCount(count, m_language());
}

QString Strings::languageName(AppLanguage setting) const {
    return L10n::languageName(setting, m_language());
}

} // namespace halvane
