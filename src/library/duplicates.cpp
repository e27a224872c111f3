// SPDX-License-Identifier: MIT
#include "library/duplicates.h"

#include "library/background.h"
#include "library/thread_check.h"

#include <cmath>

namespace halvane {

namespace {

/// Up to here a search takes a few milliseconds.
constexpr std::size_t searchedInPlace = 2000;

QString songKey(const Track& track) {
    const qint64 seconds =
        track.durationSeconds ? static_cast<qint64>(std::trunc(*track.durationSeconds)) : -1;
    return track.title.toLower() + QLatin1Char('|') + track.artist.toLower() + QLatin1Char('|') +
           QString::number(seconds);
}

} // namespace

std::vector<TrackRows> duplicateTrackGroups(const TrackRows& tracks) {
    // Most songs are there once: only a hash of each is kept, and full keys of those that meet.
    QHash<size_t, quint32> seen;
    seen.reserve(static_cast<qsizetype>(tracks.size()));
    std::vector<size_t> hashes;
    hashes.reserve(tracks.size());
    for (const TrackPtr& track : tracks) {
        hashes.push_back(qHash(songKey(*track)));
        ++seen[hashes.back()];
    }
    QHash<QString, std::size_t> groupOfKey;
    std::vector<TrackRows> groups;
    for (std::size_t i = 0; i < tracks.size(); ++i) {
        if (seen.value(hashes[i]) < 2)
            continue;
        const QString key = songKey(*tracks[i]);
        const auto known = groupOfKey.constFind(key);
        if (known != groupOfKey.cend()) {
            groups[*known].push_back(tracks[i]);
        } else {
            groupOfKey.insert(key, groups.size());
            groups.push_back({tracks[i]});
        }
    }
    std::erase_if(groups, [](const TrackRows& group) { return group.size() < 2; });
    return groups;
}

QSet<QString> superfluousCopies(const std::vector<TrackRows>& groups,
                                const std::function<bool(const QString& path)>& isAvailable) {
    QSet<QString> paths;
    for (const TrackRows& group : groups) {
        auto kept = std::find_if(group.cbegin(), group.cend(),
                                 [&](const TrackPtr& track) { return isAvailable(track->path()); });
        if (kept == group.cend())
            kept = group.cbegin();
        for (const TrackPtr& track : group)
            if (track != *kept && track->sourceURL)
                paths.insert(track->path());
    }
    return paths;
}

Duplicates::Duplicates(const LibraryStore& library, QObject* parent)
    : QObject(parent)
    , m_library(library) {
    m_worker.setMaxThreadCount(1);
}

Duplicates::~Duplicates() {
    m_worker.clear();
    m_worker.waitForDone();
}

void Duplicates::refresh() {
    find({});
}

void Duplicates::find(std::function<void(const std::vector<TrackRows>& groups)> found) {
    assertOwnThread(*this);
    const quint64 generation = ++m_generation;
    if (m_library.size() <= searchedInPlace) {
        publish(duplicateTrackGroups(m_library.rows()));
        if (found)
            found(m_groups);
        return;
    }
    runInBackground(
        m_worker, this,
        [rows = m_library.snapshot()] {
            yieldToTheWindow();
            return duplicateTrackGroups(*rows);
        },
        [this, generation, found](std::vector<TrackRows> groups) {
            if (generation == m_generation)
                publish(std::move(groups));
            if (found)
                found(m_groups);
        });
}

void Duplicates::publish(std::vector<TrackRows> groups) {
    if (groups == m_groups)
        return;
    m_groups = std::move(groups);
    Q_EMIT groupsChanged();
}

} // namespace halvane
