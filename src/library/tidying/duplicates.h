// SPDX-License-Identifier: MIT
#pragma once

#include "library/catalog/library_store.h"
#include "platform/serial_worker.h"

#include <QObject>
#include <QStringList>

#include <functional>
#include <stop_token>

namespace halvane {

/// Groups of tracks that are one song: their titles and artists differ at most in letter case, and
/// their lengths are the same number of whole seconds. Each group is in library order, and the
/// groups are in the order of their first tracks. Any thread.
std::vector<TrackRows> duplicateTrackGroups(const TrackRows& tracks);

/// The paths, without links, of the tracks in the groups whose own paths lead through links. Those
/// of a disk that does not answer are left out. Any thread but the main one.
QHash<QString, QString> pathsBehindLinks(const std::vector<TrackRows>& groups,
                                         const std::stop_token& stop);

/// The paths of all tracks but one of each group. The one that stays is the first that is
/// available, or the first of all if none is; where its path leads through a link to another one
/// that is available, that one stays in its place. Pure.
QStringList superfluousCopies(const std::vector<TrackRows>& groups,
                              const QHash<QString, QString>& behindLinks,
                              const std::function<bool(const QString& path)>& isAvailable);

/// The duplicate groups of the library. A worker looks for them in a large one. Main thread.
class Duplicates : public QObject {
    Q_OBJECT
    Q_PROPERTY(int duplicateGroupCount READ duplicateGroupCount NOTIFY groupsChanged)

  public:
    /// The store must outlive it.
    explicit Duplicates(const LibraryStore& library, QObject* parent = nullptr);

    /// The groups that the last search found.
    [[nodiscard]] const std::vector<TrackRows>& groups() const { return m_groups; }
    [[nodiscard]] int duplicateGroupCount() const { return static_cast<int>(m_groups.size()); }

    /// Searches the library as it is now.
    void refresh();
    /// Whether the groups are those of the library as it is now.
    [[nodiscard]] bool areCurrent() const { return m_revision == m_library.revision(); }
    /// Takes tracks out of the groups. To be called when they have just left the library, the
    /// groups were current until then, and nothing else has changed.
    void forget(const QSet<QString>& paths);
    /// Searches the library and hands over the groups. If the library has changed by then, it is
    /// searched again first.
    void find(std::function<void(const std::vector<TrackRows>& groups)> found);

  Q_SIGNALS:
    void groupsChanged();

  private:
    void publish(std::vector<TrackRows> groups, quint64 revision);
    void sortByFirst(std::vector<TrackRows>& groups) const;

    const LibraryStore& m_library;
    std::vector<TrackRows> m_groups;
    quint64 m_generation = 0; ///< of the newest search
    quint64 m_revision = 0;   ///< of the library in which the groups were found
    SerialWorker m_worker{SerialWorker::Priority::low};
};

} // namespace halvane
