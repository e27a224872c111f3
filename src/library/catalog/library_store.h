// SPDX-License-Identifier: MIT
#pragma once

#include "model/track.h"

#include <QHash>
#include <QObject>
#include <QSet>
#include <QStringList>

#include <memory>
#include <optional>
#include <utility>
#include <vector>

namespace halvane {

/// One row of the library. The track never changes; another may take its place.
using TrackPtr = std::shared_ptr<const Track>;
using TrackRows = std::vector<TrackPtr>;

/// A new row.
inline TrackPtr makeRow(Track track) {
    return std::make_shared<const Track>(std::move(track));
}

/// Rows and the row of each path, without a path twice. A worker can prepare them for a large
/// library.
struct IndexedRows {
    TrackRows rows;
    QHash<QString, quint32> rowOfPath;
};

/// Leaves out tracks whose path comes a second time. Any thread.
IndexedRows indexed(const TrackRows& tracks);

/// Leaves out the tracks of some standardized paths, too. Any thread.
IndexedRows indexedWithout(const TrackRows& tracks, const QSet<QString>& paths);

/// Owns the library's tracks, in library order and without a path twice. The queue, the lists and
/// the workers share the rows. A snapshot costs nothing to take and never changes. Main thread; a
/// snapshot may be read on any thread.
class LibraryStore : public QObject {
    Q_OBJECT

  public:
    explicit LibraryStore(QObject* parent = nullptr);

    /// The rows as they are now, to keep or to take to another thread.
    [[nodiscard]] std::shared_ptr<const TrackRows> snapshot() const;
    /// The rows as they are now, for reading at once.
    [[nodiscard]] const TrackRows& rows() const { return *m_rows; }
    [[nodiscard]] std::size_t size() const { return m_rows->size(); }
    /// The row of a standardized path; none if the library doesn't hold it.
    [[nodiscard]] std::optional<std::size_t> rowOf(const QString& path) const;
    /// The track of a standardized path, or null.
    [[nodiscard]] TrackPtr track(const QString& path) const;
    /// The track of an id, or null.
    [[nodiscard]] TrackPtr trackWithID(const QUuid& id) const;

    /// Appends the tracks whose paths the library doesn't hold yet, in their order, and gives their
    /// number. All tracks without a file are appended.
    std::size_t append(const TrackRows& tracks);
    /// The same. An empty library takes the rows over at a cost that does not grow with them.
    std::size_t append(IndexedRows tracks);
    /// Puts tracks in the place of those with the same paths. Unknown paths are ignored.
    void replace(const TrackRows& tracks);
    /// Takes out the tracks of these standardized paths.
    void remove(const QSet<QString>& paths);
    /// A track, and the row that it has or had.
    using PlacedTrack = std::pair<std::size_t, TrackPtr>;
    /// The tracks of these standardized paths with their rows, ascending.
    [[nodiscard]] std::vector<PlacedTrack> placed(const QStringList& paths) const;
    /// Puts tracks back to rows that they had, ascending. Those of known paths are left out.
    void putBack(const std::vector<PlacedTrack>& tracks);

    /// Takes these rows in place of all others. The caller gets the previous index, which takes
    /// long to free.
    void assign(IndexedRows& tracks);

    /// Another number after each change.
    [[nodiscard]] quint64 revision() const { return m_revision; }

  Q_SIGNALS:
    /// Tracks came, went or were replaced.
    void tracksChanged();
    /// These tracks have come, or come back. Not sent of those that a worker has prepared.
    void came(const TrackRows& tracks);
    /// These tracks have taken the places of others, which are in the same order.
    void replaced(const TrackRows& tracks, const TrackRows& before);

  private:
    TrackRows appendNew(const TrackRows& tracks);
    TrackRows& writableRows();
    void changed();

    std::shared_ptr<TrackRows> m_rows;
    /// A snapshot of m_rows was given away, so that m_rows must be copied before a change. The use
    /// count would not do: it does not order a worker's last reads before our writes.
    mutable bool m_isShared = false;
    QHash<QString, quint32> m_rowOfPath;
    quint64 m_revision = 0;
};

} // namespace halvane
