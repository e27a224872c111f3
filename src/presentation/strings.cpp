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

QString Strings::discHeading(int disc) const {
    return L10n::discHeading(disc, m_language());
}

QString Strings::visibleCount(int count) const {
    return L10n::visibleCount(count, m_language());
}

QString Strings::selectedCount(int count) const {
    return L10n::selectedCount(count, m_language());
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

QString Strings::importReading(double part) const {
    return L10n::importReading(part, m_language());
}

QString Strings::albumLength(double seconds) const {
    return L10n::albumLength(seconds, m_language());
}

QString Strings::loveTrack(const QString& trackTitle) const {
    return L10n::loveTrack(trackTitle, m_language());
}

QString Strings::dialogTitle(const QString& command) const {
    return L10n::dialogTitle(command);
}

QString Strings::trackCount(int count) const {
    return L10n::trackCount(count, m_language());
}

QString Strings::placeName(SidebarItem item) const {
    return L10n::text(L10n::placeName(item), m_language());
}

QString Strings::languageName(AppLanguage setting) const {
    return L10n::languageName(setting, m_language());
}

} // namespace halvane
