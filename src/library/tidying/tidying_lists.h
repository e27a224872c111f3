// SPDX-License-Identifier: MIT
#pragma once

#include "library/tidying/tidying_list_model.h"

namespace halvane {

class Availability;
class Duplicates;

/// The three lists of the maintenance window, in library order. A drive's files may be found
/// missing one by one, so changes are shown together in the next turn of the event loop. Main
/// thread.
class TidyingLists : public QObject {
    Q_OBJECT
    Q_PROPERTY(QAbstractListModel* cloudPendingTracks READ cloudPendingTracks CONSTANT)
    Q_PROPERTY(QAbstractListModel* missingTracks READ missingTracks CONSTANT)
    Q_PROPERTY(QAbstractListModel* duplicateTracks READ duplicateTracks CONSTANT)

  public:
    /// All three must outlive it.
    TidyingLists(const LibraryStore& store, const Availability& availability,
                 const Duplicates& duplicates, QObject* parent = nullptr);

    TidyingListModel* cloudPendingTracks() { return &m_cloudPending; }
    TidyingListModel* missingTracks() { return &m_missing; }
    /// The tracks of all duplicate groups, group by group.
    TidyingListModel* duplicateTracks() { return &m_duplicates; }

  private:
    void scheduleRefresh();
    void refresh();
    [[nodiscard]] TrackRows tracksOf(const QSet<QString>& paths) const;

    const LibraryStore& m_store;
    const Availability& m_availability;
    const Duplicates& m_duplicateGroups;
    bool m_isScheduled = false;
    TidyingListModel m_cloudPending;
    TidyingListModel m_missing;
    TidyingListModel m_duplicates;
};

} // namespace halvane
