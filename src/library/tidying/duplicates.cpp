// SPDX-License-Identifier: MIT
#include "library/tidying/duplicates.h"

#include "library/catalog/track_rows.h"
#include "metadata/parallel/look_at_each.h"
#include "platform/thread_check.h"

#include <QFileInfo>

#include <algorithm>
#include <cmath>

namespace halvane {

namespace {

// A search of so many tracks takes a few milliseconds.
constexpr std::size_t searchedInPlace = 2000;

// The user waits for the tracks to go.
constexpr std::chrono::milliseconds patience{2000};

QString songKey(const Track& track) {
    const qint64 seconds =
        track.durationSeconds ? static_cast<qint64>(std::trunc(*track.durationSeconds)) : -1;
    return track.title.toLower() + QLatin1Char('|') + track.artist.toLower() + QLatin1Char('|') +
           QString::number(seconds);
}

} // namespace

std::vector<TrackRows> duplicateTrackGroups(const TrackRows& tracks) {
    // Most songs are there once. Only those whose hashes meet need their full keys.
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

QHash<QString, QString> pathsBehindLinks(const std::vector<TrackRows>& groups,
                                         const std::stop_token& stop) {
    QStringList paths;
    for (const TrackRows& group : groups)
        paths.append(pathsOf(group));
    const auto real = lookAtEach<QString>(
        paths, [](const QString& path) { return QFileInfo(path).canonicalFilePath(); }, stop,
        patience);
    QHash<QString, QString> behindLinks;
    for (qsizetype i = 0; i < paths.size(); ++i)
        if (const auto& path = real[static_cast<std::size_t>(i)];
            path && !path->isEmpty() && *path != paths[i])
            behindLinks.insert(paths[i], *path);
    return behindLinks;
}

QStringList superfluousCopies(const std::vector<TrackRows>& groups,
                              const QHash<QString, QString>& behindLinks,
                              const std::function<bool(const QString& path)>& isAvailable) {
    QStringList paths;
    for (const TrackRows& group : groups) {
        auto kept = std::find_if(group.cbegin(), group.cend(),
                                 [&](const TrackPtr& track) { return isAvailable(track->path()); });
        if (kept == group.cend())
            kept = group.cbegin();
        const auto behindLink = behindLinks.constFind((*kept)->path());
        if (behindLink != behindLinks.cend() && isAvailable(*behindLink)) {
            const auto real =
                std::find_if(group.cbegin(), group.cend(),
                             [&](const TrackPtr& track) { return track->path() == *behindLink; });
            if (real != group.cend())
                kept = real;
        }
        for (const TrackPtr& track : group)
            if (track != *kept && track->sourceURL)
                paths.append(track->path());
    }
    return paths;
}

Duplicates::Duplicates(const LibraryStore& library, QObject* parent)
    : QObject(parent)
    , m_library(library) {
}

void Duplicates::refresh() {
    find({});
}

void Duplicates::find(std::function<void(const std::vector<TrackRows>& groups)> found) {
    assertOwnThread(*this);
    const quint64 generation = ++m_generation;
    const quint64 revision = m_library.revision();
    if (m_library.size() <= searchedInPlace) {
        publish(duplicateTrackGroups(m_library.rows()), revision);
        if (found)
            found(m_groups);
        return;
    }
    m_worker.run([rows = m_library.snapshot()] { return duplicateTrackGroups(*rows); },
                 [this, generation, revision, found](std::vector<TrackRows> groups) {
                     if (generation == m_generation)
                         publish(std::move(groups), revision);
                     if (found && areCurrent())
                         found(m_groups);
                     else if (found) // a track that was removed must not be the copy that is kept
                         find(found);
                 });
}

void Duplicates::forget(const QSet<QString>& paths) {
    assertOwnThread(*this);
    ++m_generation;
    std::vector<TrackRows> groups = m_groups;
    bool isInOrder = true;
    for (TrackRows& group : groups) {
        const TrackPtr first = group.front();
        std::erase_if(group, [&](const TrackPtr& track) { return paths.contains(track->path()); });
        isInOrder = isInOrder && (group.size() < 2 || group.front() == first);
    }
    std::erase_if(groups, [](const TrackRows& group) { return group.size() < 2; });
    if (!isInOrder)
        sortByFirst(groups);
    publish(std::move(groups), m_library.revision());
}

void Duplicates::sortByFirst(std::vector<TrackRows>& groups) const {
    std::vector<std::pair<std::size_t, TrackRows>> byRow;
    byRow.reserve(groups.size());
    for (TrackRows& group : groups) {
        const std::size_t row = m_library.rowOf(group.front()->path()).value_or(0);
        byRow.emplace_back(row, std::move(group));
    }
    std::stable_sort(byRow.begin(), byRow.end(),
                     [](const auto& a, const auto& b) { return a.first < b.first; });
    std::transform(byRow.begin(), byRow.end(), groups.begin(),
                   [](auto& group) { return std::move(group.second); });
}

void Duplicates::publish(std::vector<TrackRows> groups, quint64 revision) {
    m_revision = revision;
    if (groups == m_groups)
        return;
    m_groups = std::move(groups);
    Q_EMIT groupsChanged();
}

} // namespace halvane
