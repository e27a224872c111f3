// SPDX-License-Identifier: MIT
#pragma once

#include "library/catalog/library_store.h"
#include "platform/serial_worker.h"

#include <QObject>
#include <QStringList>

#include <functional>

namespace halvane {

/// Tracks that are one song: the same title and artist but for case, and the same whole number of
/// seconds. Each group in library order, the groups in the order of their first tracks. Any thread.
std::vector<TrackRows> duplicateTrackGroups(const TrackRows& tracks);

/// The paths of all tracks but one of each group: the first that can be played stays, or the first
/// where none can. Pure.
QStringList superfluousCopies(const std::vector<TrackRows>& groups,
                              const std::function<bool(const QString& path)>& isAvailable);

/// The groups of the library, looked for by a worker where it is large. Main thread.
class Duplicates : public QObject {
    Q_OBJECT
    Q_PROPERTY(int duplicateGroupCount READ duplicateGroupCount NOTIFY groupsChanged)

  public:
    /// The store must outlive it.
    explicit Duplicates(const LibraryStore& library, QObject* parent = nullptr);

    /// As of the last search.
    const std::vector<TrackRows>& groups() const { return m_groups; }
    int duplicateGroupCount() const { return static_cast<int>(m_groups.size()); }

    /// Looks at the library as it is now.
    void refresh();
    /// Whether the groups are those of the library as it is now.
    bool areCurrent() const { return m_revision == m_library.revision(); }
    /// Takes tracks that have just left the library, and nothing else has happened to it, out of
    /// groups that were current.
    void forget(const QSet<QString>& paths);
    /// Looks at the library as it is now and hands the groups over; once more, if it has changed
    /// by then.
    void find(std::function<void(const std::vector<TrackRows>& groups)> found);

  Q_SIGNALS:
    void groupsChanged();

  private:
    void publish(std::vector<TrackRows> groups, quint64 revision);
    void sortByFirst(std::vector<TrackRows>& groups) const;

    const LibraryStore& m_library;
    std::vector<TrackRows> m_groups;
    quint64 m_generation = 0; ///< of the newest search, whose result alone counts
    quint64 m_revision = 0;   ///< of the library whose groups these are
    SerialWorker m_worker{SerialWorker::Priority::low};
};

} // namespace halvane
