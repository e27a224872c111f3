// SPDX-License-Identifier: MIT
#include "library/user/track_user_data.h"

#include "library/user/settings_keys.h"
#include "platform/thread_check.h"

#include <algorithm>
#include <limits>

namespace halvane {

namespace {

constexpr int mostStars = 5;

} // namespace

TrackUserData::TrackUserData(Preferences& preferences, QObject* parent)
    : QObject(parent)
    , m_preferences(preferences) {
}

void TrackUserData::restore() {
    assertOwnThread(*this);
    // Nothing needs to be written back, except for a list that names a track twice.
    if (const auto loved = m_preferences.strings(SettingsKey::lovedPaths)) {
        m_lovedPaths = QSet<QString>(loved->cbegin(), loved->cend());
        if (m_lovedPaths.size() != loved->size())
            m_preferences.setStrings(SettingsKey::lovedPaths, m_lovedPaths.values());
    }
    const auto restore = [this](LateValue<IntegerMap>& map, const QString& key) {
        map.restore(m_preferences.integerMapLater(key),
                    [this, key] { return m_preferences.integerMap(key); });
    };
    restore(m_trackRatings, SettingsKey::trackRatings);
    restore(m_playCounts, SettingsKey::playCounts);
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

void TrackUserData::toggleLovedTogether(const QStringList& paths) {
    const bool areLoved = std::all_of(paths.cbegin(), paths.cend(),
                                      [this](const QString& path) { return isLoved(path); });
    for (const QString& path : paths)
        if (isLoved(path) == areLoved)
            toggleLoved(path);
}

void TrackUserData::rateTogether(int rating, const QStringList& paths) {
    for (const QString& path : paths)
        setRating(rating, path);
}

void TrackUserData::setRating(int rating, const QString& path) {
    assertOwnThread(*this);
    const int stars = std::clamp(rating, 0, mostStars);
    if (path.isEmpty() || stars == this->rating(path))
        return;
    if (stars == 0) {
        m_trackRatings.get().remove(path);
        m_preferences.removeEntries({SettingsKey::trackRatings}, {path});
    } else {
        m_trackRatings.get().insert(path, stars);
        m_preferences.insertInteger(SettingsKey::trackRatings, path, stars);
    }
    Q_EMIT ratingChanged(path);
}

TrackUserData::Said TrackUserData::said(const QString& path) const {
    return {isLoved(path), rating(path), playCount(path)};
}

void TrackUserData::sayAgain(const Said& said, const QString& path) {
    if (said.isLoved && !isLoved(path))
        toggleLoved(path);
    if (said.rating > 0 && rating(path) == 0)
        setRating(static_cast<int>(said.rating), path);
    if (said.plays > 0)
        addPlays(said.plays, path);
}

void TrackUserData::addPlays(qint64 plays, const QString& path) {
    assertOwnThread(*this);
    if (path.isEmpty())
        return;
    qint64& count = m_playCounts.get()[path];
    if (count > std::numeric_limits<qint64>::max() - plays)
        return; // counting never comes so far, but a stored value may be anything
    count += plays;
    m_preferences.insertInteger(SettingsKey::playCounts, path, count);
}

void TrackUserData::forget(const QSet<QString>& paths) {
    assertOwnThread(*this);
    IntegerMap& ratings = m_trackRatings.get();
    IntegerMap& counts = m_playCounts.get();
    for (const QString& path : paths) {
        m_lovedPaths.remove(path);
        ratings.remove(path);
        counts.remove(path);
    }
}

} // namespace halvane
