// SPDX-License-Identifier: MIT
#include "library/tidying/tidying_lists.h"

#include "library/tidying/availability.h"
#include "library/tidying/duplicates.h"

#include <algorithm>

namespace halvane {

TidyingLists::TidyingLists(const LibraryStore& store, const Availability& availability,
                           const Duplicates& duplicates, QObject* parent)
    : QObject(parent)
    , m_store(store)
    , m_availability(availability)
    , m_duplicateGroups(duplicates) {
    connect(&availability, &Availability::cloudPendingPathsChanged, this,
            &TidyingLists::scheduleRefresh);
    connect(&availability, &Availability::unavailablePathsChanged, this,
            &TidyingLists::scheduleRefresh);
    connect(&duplicates, &Duplicates::groupsChanged, this, &TidyingLists::scheduleRefresh);
}

void TidyingLists::scheduleRefresh() {
    if (m_isScheduled)
        return;
    m_isScheduled = true;
    QMetaObject::invokeMethod(this, &TidyingLists::refresh, Qt::QueuedConnection);
}

void TidyingLists::refresh() {
    m_isScheduled = false;
    m_cloudPending.setTracks(tracksOf(m_availability.cloudPendingPaths()));
    m_missing.setTracks(tracksOf(m_availability.unavailablePaths()));
    TrackRows copies;
    for (const TrackRows& group : m_duplicateGroups.groups())
        copies.insert(copies.end(), group.begin(), group.end());
    m_duplicates.setTracks(std::move(copies));
}

TrackRows TidyingLists::tracksOf(const QSet<QString>& paths) const {
    std::vector<std::size_t> rows;
    for (const QString& path : paths) {
        if (const auto row = m_store.rowOf(path))
            rows.push_back(*row);
    }
    std::sort(rows.begin(), rows.end());
    TrackRows tracks;
    tracks.reserve(rows.size());
    for (const std::size_t row : rows)
        tracks.push_back(m_store.rows()[row]);
    return tracks;
}

} // namespace halvane
