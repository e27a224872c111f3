// SPDX-License-Identifier: MIT
#include "library/track_user_data.h"

#include "library/settings_keys.h"
#include "library/thread_check.h"

#include <algorithm>
#include <limits>

namespace halvane {

namespace {

constexpr int mostStars = 5;

// Takes entries out of a collection and says which were there.
template<typename Collection>
QSet<QString> takeOut(Collection& collection, const QSet<QString>& paths) {
    QSet<QString> taken;
    for (const auto& path : paths)
        if (collection.remove(path))
            taken.insert(path);
    return taken;
}

} // namespace

TrackUserData::TrackUserData(Preferences& preferences, QObject* parent)
    : QObject(parent)
    , m_preferences(preferences) {
}

void TrackUserData::restore() {
    assertOwnThread(*this);
    // What is taken over is what is stored, so that there is nothing to write back, except where a
    // list names a track twice.
    if (const auto loved = m_preferences.strings(SettingsKey::lovedPaths)) {
        m_lovedPaths = QSet<QString>(loved->cbegin(), loved->cend());
        if (m_lovedPaths.size() != loved->size())
            m_preferences.setStrings(SettingsKey::lovedPaths, m_lovedPaths.values());
    }
    if (auto ratings = m_preferences.integerMap(SettingsKey::trackRatings))
        m_trackRatings = *std::move(ratings);
    if (auto counts = m_preferences.integerMap(SettingsKey::playCounts))
        m_playCounts = *std::move(counts);
    Q_EMIT reset();
}

void TrackUserData::toggleLoved(const QString& path) {
    assertOwnThread(*this);
    if (path.isEmpty())
        return;
    if (m_lovedPaths.remove(path)) {
        m_preferences.removeString(SettingsKey::lovedPaths, path);
    } else {
        m_lovedPaths.insert(path);
        m_preferences.insertString(SettingsKey::lovedPaths, path);
    }
    Q_EMIT lovedChanged(path);
}

void TrackUserData::setRating(int rating, const QString& path) {
    assertOwnThread(*this);
    const int stars = std::clamp(rating, 0, mostStars);
    if (path.isEmpty() || stars == this->rating(path))
        return;
    if (stars == 0) {
        m_trackRatings.remove(path);
        m_preferences.removeEntries(SettingsKey::trackRatings, {path});
    } else {
        m_trackRatings.insert(path, stars);
        m_preferences.insertInteger(SettingsKey::trackRatings, path, stars);
    }
    Q_EMIT ratingChanged(path);
}

void TrackUserData::countPlay(const QString& path) {
    assertOwnThread(*this);
    if (path.isEmpty())
        return;
    qint64& count = m_playCounts[path];
    if (count == std::numeric_limits<qint64>::max())
        return; // only a stored value can be there; stays
    ++count;
    m_preferences.insertInteger(SettingsKey::playCounts, path, count);
    Q_EMIT playCountChanged(path);
}

void TrackUserData::removePaths(const QSet<QString>& paths) {
    assertOwnThread(*this);
    const QSet<QString> loved = takeOut(m_lovedPaths, paths);
    const QSet<QString> rated = takeOut(m_trackRatings, paths);
    const QSet<QString> played = takeOut(m_playCounts, paths);
    if (!loved.isEmpty())
        m_preferences.removeEntries(SettingsKey::lovedPaths, loved);
    if (!rated.isEmpty())
        m_preferences.removeEntries(SettingsKey::trackRatings, rated);
    if (!played.isEmpty())
        m_preferences.removeEntries(SettingsKey::playCounts, played);
    if (!loved.isEmpty() || !rated.isEmpty() || !played.isEmpty())
        Q_EMIT reset();
}

} // namespace halvane
