// SPDX-License-Identifier: MIT
#pragma once

#include "model/track.h"

#include <QHash>
#include <QObject>
#include <QSet>

#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace halvane {

/// One row of the library: a track that is never changed, only replaced by another.
using TrackPtr = std::shared_ptr<const Track>;
using TrackRows = std::vector<TrackPtr>;

/// A new row.
inline TrackPtr makeRow(Track track) {
    return std::make_shared<const Track>(std::move(track));
}

/// Rows, no path twice, with the row of each path: what a worker can prepare of a large library.
struct IndexedRows {
    TrackRows rows;
    QHash<QString, quint32> rowOfPath;
};

/// Leaves out tracks whose path comes a second time. Any thread.
IndexedRows indexed(const TrackRows& tracks);

/// The one owner of the library's tracks, in library order, no path twice. Rows are shared with
/// the queue, the lists and the workers. A snapshot costs nothing to take and never changes.
/// Main thread; a snapshot may be read on any.
class LibraryStore : public QObject {
    Q_OBJECT

  public:
    explicit LibraryStore(QObject* parent = nullptr);

    /// The rows as they are now, for whoever keeps them or takes them to another thread.
    std::shared_ptr<const TrackRows> snapshot() const;
    /// The rows as they are now, for reading at once.
    const TrackRows& rows() const { return *m_rows; }
    std::size_t size() const { return m_rows->size(); }
    /// The row of a standardized path, none when the library doesn't hold it.
    std::optional<std::size_t> rowOf(const QString& path) const;
    /// The track of a standardized path, or null.
    TrackPtr track(const QString& path) const;
    /// The track of an id, or null.
    TrackPtr trackWithID(const QUuid& id) const;

    /// Appends those tracks whose path the library doesn't hold yet, in their order, and gives
    /// their number. Tracks without a file are appended as they are.
    std::size_t append(const TrackRows& tracks);
    /// The same; an empty library takes the rows over as they are, at a cost that does not grow
    /// with them.
    std::size_t append(IndexedRows tracks);
    /// Puts tracks in the place of those with the same paths; unknown paths are ignored.
    void replace(const TrackRows& tracks);
    /// Takes out the tracks of these standardized paths.
    void remove(const QSet<QString>& paths);

    /// What stays of the library as it was when this was begun.
    struct Remainder {
        std::shared_ptr<TrackRows> rows;
        QHash<QString, quint32> rowOfPath;
        quint64 revision = 0;
    };
    /// The work of a removal, for any thread.
    std::function<Remainder()> beginRemoval(const QSet<QString>& paths) const;
    /// As remove, at a cost that does not grow with the library unless it has changed since the
    /// removal began. What there was instead takes time to free, and comes back for it.
    void finishRemoval(const QSet<QString>& paths, Remainder& remainder);

    /// Another number after each change.
    quint64 revision() const { return m_revision; }

  Q_SIGNALS:
    /// Tracks came, went or were replaced.
    void tracksChanged();

  private:
    TrackRows& writableRows();
    void changed();

    std::shared_ptr<TrackRows> m_rows;
    /// A snapshot of m_rows was given away, so it must be copied before a change. (Asking how many
    /// hold it would not do: a worker that let go a moment ago may not have been read to its end as
    /// this thread sees it.)
    mutable bool m_isShared = false;
    QHash<QString, quint32> m_rowOfPath;
    quint64 m_revision = 0;
};

} // namespace halvane
