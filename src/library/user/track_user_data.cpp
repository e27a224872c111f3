// SPDX-License-Identifier: MIT
#include "library/user/track_user_data.h"

#include "library/user/settings_keys.h"
#include "platform/thread_check.h"

#include <algorithm>
#include <limits>

namespace halvane {

namespace {

constexpr int mostStars = 5;

// Each takes a search through the queue and the lists. With more it is quicker to draw all again.
constexpr qsizetype mostSingly = 32;

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
    restore(m_lastPlayed, SettingsKey::lastPlayed);
    Q_EMIT reset();
}

void TrackUserData::toggleLoved(const QString& path) {
    assertOwnThread(*this);
    if (path.isEmpty())
        return;
    const Preferences::Together together(m_preferences);
    const Said before = said(path);
    storeLoved(!before.isLoved, path);
    Q_EMIT saying(path, before);
    Q_EMIT lovedChanged(path);
}

void TrackUserData::toggleLovedTogether(const QStringList& paths) {
    const Preferences::Together together(m_preferences);
    const bool areLoved = std::all_of(paths.cbegin(), paths.cend(),
                                      [this](const QString& path) { return isLoved(path); });
    for (const QString& path : paths)
        if (isLoved(path) == areLoved)
            toggleLoved(path);
}

void TrackUserData::rateTogether(int rating, const QStringList& paths) {
    const Preferences::Together together(m_preferences);
    for (const QString& path : paths)
        setRating(rating, path);
}

void TrackUserData::setRating(int rating, const QString& path) {
    assertOwnThread(*this);
    const int stars = std::clamp(rating, 0, mostStars);
    if (path.isEmpty() || stars == this->rating(path))
        return;
    const Preferences::Together together(m_preferences);
    const Said before = said(path);
    storeRating(stars, path);
    Q_EMIT saying(path, before);
    Q_EMIT ratingChanged(path);
}

Said TrackUserData::said(const QString& path) const {
    return {isLoved(path), rating(path), playCount(path), lastPlayed().value(path)};
}

void TrackUserData::sayAgain(const Said& said, const QString& path) {
    if (said.isLoved && !isLoved(path))
        toggleLoved(path);
    if (said.rating > 0 && rating(path) == 0)
        setRating(static_cast<int>(said.rating), path);
    if (said.plays > 0)
        addPlays(said.plays, said.lastPlayed, path);
}

void TrackUserData::say(const std::vector<std::pair<QString, Said>>& ofPaths) {
    assertOwnThread(*this);
    QStringList loved;
    QStringList rated;
    QStringList counted;
    const Preferences::Together together(m_preferences);
    for (const auto& [path, now] : ofPaths) {
        const Said before = said(path);
        if (now.isLoved != before.isLoved) {
            storeLoved(now.isLoved, path);
            loved.append(path);
        }
        if (now.rating != before.rating) {
            storeRating(now.rating, path);
            rated.append(path);
        }
        if (now.plays != before.plays || now.lastPlayed != before.lastPlayed) {
            storePlays(now.plays, now.lastPlayed, path);
            counted.append(path);
        }
    }
    if (loved.size() + rated.size() + counted.size() > mostSingly) {
        Q_EMIT reset();
        return;
    }
    for (const QString& path : loved)
        Q_EMIT lovedChanged(path);
    for (const QString& path : rated)
        Q_EMIT ratingChanged(path);
    for (const QString& path : counted)
        Q_EMIT playsChanged(path);
}

void TrackUserData::addPlays(qint64 plays, qint64 lastPlayed, const QString& path) {
    assertOwnThread(*this);
    if (path.isEmpty())
        return;
    const Said before = said(path);
    const qint64 count = before.plays;
    if (count > std::numeric_limits<qint64>::max() - plays)
        return; // counting never comes so far, but a stored value may be anything
    const Preferences::Together together(m_preferences);
    storePlays(count + plays, std::max(before.lastPlayed, lastPlayed), path);
    Q_EMIT saying(path, before);
    Q_EMIT playsChanged(path);
}

void TrackUserData::storeLoved(bool isLoved, const QString& path) {
    if (isLoved) {
        m_lovedPaths.insert(path);
        m_preferences.insertString(SettingsKey::lovedPaths, path);
    } else {
        m_lovedPaths.remove(path);
        m_preferences.removeString(SettingsKey::lovedPaths, path);
    }
}

void TrackUserData::storeRating(qint64 rating, const QString& path) {
    storeNumber(m_trackRatings.get(), SettingsKey::trackRatings, rating, path);
}

void TrackUserData::storePlays(qint64 plays, qint64 lastPlayed, const QString& path) {
    storeNumber(m_playCounts.get(), SettingsKey::playCounts, plays, path);
    storeNumber(m_lastPlayed.get(), SettingsKey::lastPlayed, lastPlayed, path);
}

void TrackUserData::storeNumber(IntegerMap& map, const QString& key, qint64 number,
                                const QString& path) {
    if (number == 0) {
        map.remove(path);
        m_preferences.removeEntries({key}, {path});
    } else {
        map.insert(path, number);
        m_preferences.insertInteger(key, path, number);
    }
}

void TrackUserData::forget(const QSet<QString>& paths) {
    assertOwnThread(*this);
    IntegerMap& ratings = m_trackRatings.get();
    IntegerMap& counts = m_playCounts.get();
    IntegerMap& lastPlayed = m_lastPlayed.get();
    for (const QString& path : paths) {
        m_lovedPaths.remove(path);
        ratings.remove(path);
        counts.remove(path);
        lastPlayed.remove(path);
    }
}

} // namespace halvane
