// SPDX-License-Identifier: MIT
#pragma once

#include "library/browsing/row_ranges.h"
#include "library/browsing/track_roles.h"
#include "library/catalog/library_store.h"
#include "model/queue_item.h"

#include <QAbstractListModel>

namespace halvane {

/// The play queue, its current entry and what it was made from, and the list that the views show.
/// An entry shares its record with the library, so that a queue of the whole library costs an id
/// and a pointer for each track. Main thread.
class PlayQueue : public QAbstractListModel {
    Q_OBJECT

  public:
    /// Besides those of TrackRole.
    enum Role {
        EntryIdRole = TrackRole::firstOwn, ///< entryId: QUuid
        IsCurrentRole,                     ///< isCurrent
    };

    struct Entry {
        QUuid id;
        TrackPtr record;
    };

    using Entries = std::vector<Entry>;

    /// Entries that stand together, or stood so before they were taken out.
    struct Piece {
        std::size_t row = 0; ///< of the first of them
        QUuid before;        ///< the entry before them; null at the queue's beginning
        Entries entries;
    };

    explicit PlayQueue(RowState state, QObject* parent = nullptr);

    [[nodiscard]] std::size_t size() const { return m_entries->size(); }
    [[nodiscard]] bool isEmpty() const { return m_entries->empty(); }
    /// The record behind an entry.
    [[nodiscard]] const Track& record(std::size_t row) const { return *(*m_entries)[row].record; }
    /// How long the entries from a row on are, as far as that is known.
    [[nodiscard]] double secondsFrom(std::size_t row) const;
    /// The records behind all entries, for a worker.
    [[nodiscard]] TrackRows records() const;
    [[nodiscard]] const QUuid& idAt(std::size_t row) const { return (*m_entries)[row].id; }
    /// The whole entry, as a value of its own.
    [[nodiscard]] QueueItem item(std::size_t row) const;
    /// The entry of an id. Without one, an entry with a null id and no texts.
    Q_INVOKABLE [[nodiscard]] halvane::QueueItem itemOf(const QUuid& id) const;
    [[nodiscard]] std::optional<std::size_t> rowOfID(const QUuid& id) const;
    /// The first entry of a standardized path.
    [[nodiscard]] std::optional<std::size_t> rowOfPath(const QString& path) const;

    [[nodiscard]] std::optional<std::size_t> currentRow() const { return m_current; }
    /// The same for a list's view, -1 without a current entry.
    Q_INVOKABLE [[nodiscard]] int rowOfCurrent() const {
        return m_current ? static_cast<int>(*m_current) : -1;
    }
    [[nodiscard]] std::optional<QueueItem> currentItem() const;
    /// The standardized path of the current entry's file, empty without one.
    [[nodiscard]] QString currentPath() const;
    void setCurrentRow(std::optional<std::size_t> row);

    /// The collection from which the queue was made; none for the library.
    [[nodiscard]] const std::optional<QString>& sourceLabel() const { return m_sourceLabel; }
    void setSourceLabel(const std::optional<QString>& label);

    /// A new queue of the tracks that have a file, with nothing current.
    void assign(const TrackRows& tracks, const std::optional<QString>& sourceLabel);
    /// The same of entries that are made already.
    void assign(std::vector<Entry> entries, const std::optional<QString>& sourceLabel);
    /// Appends an entry for each track that has a file, and gives the row of the first.
    std::size_t append(const TrackRows& tracks);
    /// New entries for the tracks that have a file, so that a worker can make those of a large
    /// library. Any thread.
    static std::vector<Entry> entriesFor(const TrackRows& tracks);
    /// Appends entries that are made already, and gives the row of the first.
    std::size_t append(std::vector<Entry> entries);
    /// Inserts entries before a row; at the end for any row beyond it.
    void insert(std::size_t row, Entries entries);
    /// Takes out the entries of these files.
    void remove(const QSet<QString>& paths);
    /// The rows of these entries, ascending.
    [[nodiscard]] std::vector<RowRange> rowsOf(const QSet<QUuid>& ids) const;
    /// The rows of these records, ascending.
    [[nodiscard]] std::vector<RowRange> rowsOf(const QSet<const Track*>& records) const;
    /// The entries of ascending rows with their places.
    [[nodiscard]] std::vector<Piece> pieces(const std::vector<RowRange>& rows) const;
    /// Takes out ascending rows, and gives their entries with their places.
    std::vector<Piece> takeOut(const std::vector<RowRange>& rows);
    /// Puts entries back to where they stood: behind the entry that was before them or, where that
    /// has gone, at their row. The pieces are in ascending order.
    void putBack(const std::vector<Piece>& pieces);

    /// The queue without the entries of some files.
    struct Remainder {
        std::vector<RowRange> gone;       ///< rows, ascending
        std::shared_ptr<Entries> entries; ///< those that stay; null: not worked out
    };
    /// Any thread.
    [[nodiscard]] static Remainder remainderOf(const Entries& entries, const QSet<QString>& paths);
    /// The entries as they are now, for a worker.
    [[nodiscard]] std::shared_ptr<const Entries> snapshot() const;
    /// Another number after each change of the entries.
    [[nodiscard]] quint64 revision() const { return m_revision; }
    /// Takes out what is gone in the remainder of the entries as they are now. The caller gets the
    /// previous entries where the model is reset, since they take long to free.
    void take(Remainder& remainder);

    /// Where the files of the queue are. Replacements that follow each other share one, so that
    /// only the first of them looks at every entry.
    class Places {
        friend PlayQueue;
        QMultiHash<QString, quint32> m_rows; ///< by path
        quint64 m_revision = 0;              ///< of the queue that they are of
    };
    /// Puts fresh records in the place of those with the same paths.
    void replace(const TrackRows& tracks, Places& places);
    /// Makes the entries of these paths those of other records.
    void exchange(const QHash<QString, TrackPtr>& recordOfPath);
    /// Moves an entry to the place of another. Does nothing if either is unknown or both are one.
    Q_INVOKABLE void move(const QUuid& id, const QUuid& toPositionOf);
    /// Moves an entry behind another, or to the beginning for a null id. Does nothing if either is
    /// unknown.
    void moveBehind(const QUuid& id, const QUuid& other);
    /// The entry before another; null at the beginning.
    [[nodiscard]] QUuid before(const QUuid& id) const;

    /// What the rows of one file show has changed.
    void refresh(const QString& path, const QList<int>& roles);
    /// What any of the rows show has changed.
    void refreshAll(const QList<int>& roles);

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

  Q_SIGNALS:
    /// Another entry is current.
    void currentChanged();
    /// The current entry has a newer record.
    void currentRecordChanged();
    /// Entries came, went or moved.
    void entriesChanged();
    /// All entries are others, of another collection.
    void replaced();
    void sourceLabelChanged();

  private:
    Entries& writableEntries();
    void insertRows(std::size_t row, Entries entries);
    void moveRow(std::size_t from, std::size_t to);
    [[nodiscard]] std::size_t rowFor(const Piece& piece) const;
    /// Changes in so many places take long to tell the views one by one.
    [[nodiscard]] bool isLong(std::size_t ranges) const;
    void takeOutRange(const RowRange& range);
    void learn(Places& places) const;

    RowState m_state;
    std::shared_ptr<Entries> m_entries;
    mutable bool m_isShared = false; ///< with a worker, so that a change needs a copy
    quint64 m_revision = 0;          ///< grows with each change of the entries
    std::optional<std::size_t> m_current;
    std::optional<QString> m_sourceLabel;
};

} // namespace halvane
