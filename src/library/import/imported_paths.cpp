// SPDX-License-Identifier: MIT
#include "library/import/imported_paths.h"

#include "library/user/settings_keys.h"
#include "platform/preferences/preferences.h"

#include <algorithm>

namespace halvane {

namespace {

// A list of so many paths is written within a millisecond.
constexpr std::size_t writtenWhole = 256;

} // namespace

QStringList ImportedPaths::stored() const {
    return m_preferences.strings(SettingsKey::importedAudioPaths).value_or(QStringList());
}

std::function<std::optional<QStringList>()> ImportedPaths::restore() {
    m_isRestoring = true;
    if (auto later = m_preferences.stringsLater(SettingsKey::importedAudioPaths))
        return later;
    return [paths = stored()] { return std::optional(paths); };
}

void ImportedPaths::add(const QStringList& paths) {
    if (m_isRestoring || m_library.size() > writtenWhole) {
        m_preferences.insertStrings(SettingsKey::importedAudioPaths, paths);
        return;
    }
    QStringList all;
    for (const TrackPtr& track : *m_library.snapshot())
        if (track->sourceURL)
            all.append(track->path());
    std::sort(all.begin(), all.end());
    m_preferences.setStrings(SettingsKey::importedAudioPaths, all);
}

} // namespace halvane
