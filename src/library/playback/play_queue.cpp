// SPDX-License-Identifier: MIT
#include "library/playback/play_queue.h"

#include "library/browsing/row_ranges.h"
#include "library/catalog/track_conversion.h"
#include "platform/thread_check.h"

#include <QHash>

#include <algorithm>
#include <deque>
#include <iterator>
#include <limits>

namespace halvane {

namespace {

const QString& pathOf(const Track& record) {
    return record.sourceURL->standardizedPath(); // only tracks with a file have entries
}

// So many entries may move up, in one range after the other, while the views wait.
constexpr std::size_t mostMoves = 1'000'000;

std::vector<RowRange> rowsOfFiles(const PlayQueue::Entries& entries, const QSet<QString>& paths) {
    std::vector<RowRange> rows;
    for (std::size_t row = 0; row < entries.size(); ++row) {
        if (paths.contains(pathOf(*entries[row].record)))
            addRow(rows, row);
    }
    return rows;
}

std::shared_ptr<PlayQueue::Entries> entriesWithout(const PlayQueue::Entries& entries,
                                                   const std::vector<RowRange>& gone) {
    auto staying = std::make_shared<PlayQueue::Entries>();
    staying->reserve(entries.size());
    auto from = entries.cbegin();
    for (const RowRange& range : gone) {
        const auto to = entries.cbegin() + static_cast<std::ptrdiff_t>(range.first);
        staying->insert(staying->end(), from, to);
        from = to + static_cast<std::ptrdiff_t>(range.count);
    }
    staying->insert(staying->end(), from, entries.cend());
    return staying;
}

// Each piece follows the entry that was before it. One whose neighbour has gone comes at its row.
PlayQueue::Entries entriesWith(const PlayQueue::Entries& entries,
                               const std::vector<PlayQueue::Piece>& pieces) {
    QSet<QUuid> known;
    known.reserve(static_cast<qsizetype>(entries.size()));
    for (const PlayQueue::Entry& entry : entries)
        known.insert(entry.id);
    QHash<QUuid, const PlayQueue::Piece*> following;
    std::deque<const PlayQueue::Piece*> loose;
    for (const PlayQueue::Piece& piece : pieces) {
        if (piece.before.isNull() || known.contains(piece.before))
            following.insert(piece.before, &piece);
        else
            loose.push_back(&piece);
    }
    PlayQueue::Entries all;
    const auto put = [&all](const PlayQueue::Piece* piece) {
        if (piece)
            all.insert(all.end(), piece->entries.cbegin(), piece->entries.cend());
    };
    const auto putLoose = [&](std::size_t upTo) {
        for (; !loose.empty() && loose.front()->row <= upTo; loose.pop_front())
            put(loose.front());
    };
    put(following.value(QUuid()));
    for (const PlayQueue::Entry& entry : entries) {
        putLoose(all.size());
        all.push_back(entry);
        put(following.value(entry.id));
    }
    putLoose(std::numeric_limits<std::size_t>::max());
    return all;
}

// Where a row is after a range has been removed; none if it was in the range.
std::optional<std::size_t> rowWithout(const RowRange& range, std::size_t row) {
    if (row < range.first)
        return row;
    return row < range.first + range.count ? std::nullopt : std::optional(row - range.count);
}

} // namespace

PlayQueue::PlayQueue(RowState state, QObject* parent)
    : QAbstractListModel(parent)
    , m_state(std::move(state))
    , m_entries(std::make_shared<Entries>()) {
}

PlayQueue::Entries& PlayQueue::writableEntries() {
    assertOwnThread(*this);
    if (m_isShared) {
        m_entries = std::make_shared<Entries>(*m_entries);
        m_isShared = false;
    }
    ++m_revision;
    return *m_entries;
}

QueueItem PlayQueue::itemOf(const QUuid& id) const {
    if (const auto row = rowOfID(id))
        return item(*row);
    QueueItem none;
    none.id = QUuid();
    return none;
}

QueueItem PlayQueue::item(std::size_t row) const {
    QueueItem item = *queueItemFromTrack(record(row));
    item.id = (*m_entries)[row].id;
    item.isPlaying = m_current == row;
    return item;
}

std::optional<std::size_t> PlayQueue::rowOfID(const QUuid& id) const {
    const auto found = std::find_if(m_entries->cbegin(), m_entries->cend(),
                                    [&](const Entry& entry) { return entry.id == id; });
    return found == m_entries->cend() ? std::nullopt
                                      : std::optional<std::size_t>(found - m_entries->cbegin());
}

std::optional<std::size_t> PlayQueue::rowOfPath(const QString& path) const {
    const auto found =
        std::find_if(m_entries->cbegin(), m_entries->cend(),
                     [&](const Entry& entry) { return pathOf(*entry.record) == path; });
    return found == m_entries->cend() ? std::nullopt
                                      : std::optional<std::size_t>(found - m_entries->cbegin());
}

std::optional<QueueItem> PlayQueue::currentItem() const {
    return m_current ? std::optional(item(*m_current)) : std::nullopt;
}

QString PlayQueue::currentPath() const {
    return m_current ? pathOf(record(*m_current)) : QString();
}

void PlayQueue::setCurrentRow(std::optional<std::size_t> row) {
    assertOwnThread(*this);
    if (m_current == row)
        return;
    const auto before = std::exchange(m_current, row);
    for (const auto& changed : {before, row}) {
        if (changed)
            redraw(*this, {*changed, 1}, {IsCurrentRole});
    }
    Q_EMIT currentChanged();
}

void PlayQueue::setSourceLabel(const std::optional<QString>& label) {
    if (m_sourceLabel == label)
        return;
    m_sourceLabel = label;
    Q_EMIT sourceLabelChanged();
}

void PlayQueue::assign(const TrackRows& tracks, const std::optional<QString>& sourceLabel) {
    assign(entriesFor(tracks), sourceLabel);
}

void PlayQueue::assign(std::vector<Entry> entries, const std::optional<QString>& sourceLabel) {
    assertOwnThread(*this);
    beginResetModel();
    m_entries = std::make_shared<Entries>(std::move(entries));
    m_isShared = false;
    ++m_revision;
    const bool hadCurrent = m_current.has_value();
    m_current.reset();
    endResetModel();
    setSourceLabel(sourceLabel);
    if (hadCurrent)
        Q_EMIT currentChanged();
    Q_EMIT entriesChanged();
    Q_EMIT replaced();
}

TrackRows PlayQueue::records() const {
    TrackRows records;
    records.reserve(size());
    for (const Entry& entry : *m_entries)
        records.push_back(entry.record);
    return records;
}

double PlayQueue::secondsFrom(std::size_t row) const {
    double seconds = 0;
    for (; row < size(); ++row)
        seconds += record(row).durationSeconds.value_or(0);
    return seconds;
}

std::vector<PlayQueue::Entry> PlayQueue::entriesFor(const TrackRows& tracks) {
    std::vector<Entry> entries;
    entries.reserve(tracks.size());
    for (const TrackPtr& track : tracks) {
        if (track->sourceURL)
            entries.push_back({freshId(), track});
    }
    return entries;
}

std::size_t PlayQueue::append(const TrackRows& tracks) {
    return append(entriesFor(tracks));
}

std::size_t PlayQueue::append(std::vector<Entry> entries) {
    const std::size_t first = size();
    insert(first, std::move(entries));
    return first;
}

void PlayQueue::insert(std::size_t row, Entries entries) {
    if (entries.empty())
        return;
    insertRows(row, std::move(entries));
    Q_EMIT entriesChanged();
}

void PlayQueue::insertRows(std::size_t row, Entries entries) {
    assertOwnThread(*this);
    const std::size_t first = std::min(row, size());
    const std::size_t count = entries.size();
    beginInsertRows({}, static_cast<int>(first), static_cast<int>(first + count - 1));
    Entries& all = writableEntries();
    if (all.empty()) {
        all = std::move(entries);
    } else {
        if (all.capacity() < all.size() + count)
            all.reserve(std::max(all.size() + count, all.size() + all.size() / 2));
        all.insert(all.begin() + static_cast<std::ptrdiff_t>(first),
                   std::make_move_iterator(entries.begin()),
                   std::make_move_iterator(entries.end()));
    }
    if (m_current && first <= *m_current)
        *m_current += count;
    endInsertRows();
}

void PlayQueue::remove(const QSet<QString>& paths) {
    Remainder remainder{rowsOfFiles(*m_entries, paths), nullptr};
    take(remainder);
}

std::vector<RowRange> PlayQueue::rowsOf(const QSet<QUuid>& ids) const {
    std::vector<RowRange> rows;
    for (std::size_t row = 0; row < size(); ++row) {
        if (ids.contains(idAt(row)))
            addRow(rows, row);
    }
    return rows;
}

std::vector<RowRange> PlayQueue::rowsOf(const QSet<const Track*>& records) const {
    std::vector<RowRange> rows;
    for (std::size_t row = 0; row < size(); ++row) {
        if (records.contains(&record(row)))
            addRow(rows, row);
    }
    return rows;
}

std::vector<PlayQueue::Piece> PlayQueue::pieces(const std::vector<RowRange>& rows) const {
    std::vector<Piece> pieces;
    for (const RowRange& range : rows) {
        const auto first = m_entries->cbegin() + static_cast<std::ptrdiff_t>(range.first);
        pieces.push_back({range.first,
                          range.first > 0 ? idAt(range.first - 1) : QUuid(),
                          {first, first + static_cast<std::ptrdiff_t>(range.count)}});
    }
    return pieces;
}

std::vector<PlayQueue::Piece> PlayQueue::takeOut(const std::vector<RowRange>& rows) {
    auto taken = pieces(rows);
    Remainder remainder{rows, nullptr};
    take(remainder);
    return taken;
}

void PlayQueue::putBack(const std::vector<Piece>& pieces) {
    assertOwnThread(*this);
    if (pieces.empty())
        return;
    if (isLong(pieces.size())) {
        const QUuid current = m_current ? idAt(*m_current) : QUuid();
        beginResetModel();
        m_entries = std::make_shared<Entries>(entriesWith(*m_entries, pieces));
        m_isShared = false;
        ++m_revision;
        m_current = current.isNull() ? std::nullopt : rowOfID(current);
        endResetModel();
    } else {
        for (const Piece& piece : pieces)
            insertRows(rowFor(piece), piece.entries);
    }
    Q_EMIT entriesChanged();
}

std::size_t PlayQueue::rowFor(const Piece& piece) const {
    if (piece.before.isNull())
        return 0;
    if (piece.row > 0 && piece.row <= size() && idAt(piece.row - 1) == piece.before)
        return piece.row;
    const auto ahead = rowOfID(piece.before);
    return ahead ? *ahead + 1 : piece.row;
}

PlayQueue::Remainder PlayQueue::remainderOf(const Entries& entries, const QSet<QString>& paths) {
    Remainder remainder{rowsOfFiles(entries, paths), nullptr};
    remainder.entries = entriesWithout(entries, remainder.gone);
    return remainder;
}

std::shared_ptr<const PlayQueue::Entries> PlayQueue::snapshot() const {
    assertOwnThread(*this);
    m_isShared = true;
    return m_entries;
}

void PlayQueue::take(Remainder& remainder) {
    assertOwnThread(*this);
    const std::vector<RowRange>& gone = remainder.gone;
    if (gone.empty())
        return;
    const bool hadCurrent = m_current.has_value();
    if (isLong(gone.size())) {
        if (!remainder.entries)
            remainder.entries = entriesWithout(*m_entries, gone);
        beginResetModel();
        for (auto range = gone.crbegin(); range != gone.crend() && m_current; ++range)
            m_current = rowWithout(*range, *m_current);
        m_entries.swap(remainder.entries);
        m_isShared = false;
        ++m_revision;
        endResetModel();
    } else {
        for (auto range = gone.crbegin(); range != gone.crend(); ++range)
            takeOutRange(*range);
    }
    if (hadCurrent && !m_current)
        Q_EMIT currentChanged();
    Q_EMIT entriesChanged();
}

bool PlayQueue::isLong(std::size_t ranges) const {
    return ranges > mostNarrowRanges || ranges * size() > mostMoves;
}

void PlayQueue::takeOutRange(const RowRange& range) {
    beginRemoveRows({}, static_cast<int>(range.first),
                    static_cast<int>(range.first + range.count - 1));
    Entries& entries = writableEntries();
    const auto begin = entries.begin() + static_cast<std::ptrdiff_t>(range.first);
    entries.erase(begin, begin + static_cast<std::ptrdiff_t>(range.count));
    if (m_current)
        m_current = rowWithout(range, *m_current);
    endRemoveRows();
}

void PlayQueue::learn(Places& places) const {
    if (places.m_revision == m_revision)
        return;
    places.m_rows.clear();
    places.m_rows.reserve(static_cast<qsizetype>(size()));
    for (std::size_t row = 0; row < size(); ++row)
        places.m_rows.insert(pathOf(record(row)), static_cast<quint32>(row));
    places.m_revision = m_revision;
}

void PlayQueue::replace(const TrackRows& tracks, Places& places) {
    assertOwnThread(*this);
    learn(places);
    std::vector<std::size_t> changed;
    for (const TrackPtr& track : tracks) {
        const auto [begin, end] = std::as_const(places.m_rows).equal_range(track->path());
        for (auto row = begin; row != end; ++row) {
            writableEntries()[*row].record = track;
            changed.push_back(*row);
        }
    }
    places.m_revision = m_revision; // no entry has moved
    for (const std::size_t row : changed) {
        redraw(*this, {row, 1}, {});
        if (m_current == row)
            Q_EMIT currentRecordChanged();
    }
}

void PlayQueue::exchange(const QHash<QString, TrackPtr>& recordOfPath) {
    assertOwnThread(*this);
    Entries& entries = writableEntries();
    bool isChanged = false;
    for (std::size_t row = 0; row < entries.size(); ++row) {
        const auto other = recordOfPath.constFind(pathOf(*entries[row].record));
        if (other == recordOfPath.cend())
            continue;
        entries[row].record = *other;
        redraw(*this, {row, 1}, {});
        isChanged = true;
    }
    if (!isChanged)
        return;
    ++m_revision;
    Q_EMIT entriesChanged();
}

void PlayQueue::move(const QUuid& id, const QUuid& toPositionOf) {
    const auto from = rowOfID(id);
    const auto to = rowOfID(toPositionOf);
    // An entry that moves down lands behind the target. One that moves up lands before it.
    if (from && to)
        moveRow(*from, *to);
}

void PlayQueue::moveBehind(const QUuid& id, const QUuid& other) {
    const auto from = rowOfID(id);
    if (!from || id == other)
        return;
    if (other.isNull())
        return moveRow(*from, 0);
    if (const auto ahead = rowOfID(other))
        moveRow(*from, *ahead < *from ? *ahead + 1 : *ahead);
}

QUuid PlayQueue::before(const QUuid& id) const {
    const auto row = rowOfID(id);
    return row && *row > 0 ? idAt(*row - 1) : QUuid();
}

void PlayQueue::moveRow(std::size_t from, std::size_t to) {
    assertOwnThread(*this);
    if (from == to)
        return;
    const int row = static_cast<int>(from);
    beginMoveRows({}, row, row, {}, static_cast<int>(to) + (to > from ? 1 : 0));
    Entries& entries = writableEntries();
    const auto at = [&](std::size_t place) {
        return entries.begin() + static_cast<std::ptrdiff_t>(place);
    };
    if (from < to)
        std::rotate(at(from), at(from + 1), at(to + 1));
    else
        std::rotate(at(to), at(from), at(from + 1));
    if (m_current == from)
        m_current = to;
    else if (m_current && from < *m_current && *m_current <= to)
        --*m_current;
    else if (m_current && to <= *m_current && *m_current < from)
        ++*m_current;
    endMoveRows();
    Q_EMIT entriesChanged();
}

void PlayQueue::refresh(const QString& path, const QList<int>& roles) {
    for (std::size_t row = 0; row < size(); ++row) {
        if (pathOf(record(row)) == path)
            redraw(*this, {row, 1}, roles);
    }
}

void PlayQueue::refreshAll(const QList<int>& roles) {
    redraw(*this, {0, size()}, roles);
}

int PlayQueue::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(m_entries->size());
}

QVariant PlayQueue::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const auto row = static_cast<std::size_t>(index.row());
    switch (role) {
    case EntryIdRole:
        return idAt(row);
    case IsCurrentRole:
        return m_current == row;
    default:
        return TrackRole::value(record(row), role, m_state);
    }
}

QHash<int, QByteArray> PlayQueue::roleNames() const {
    auto names = TrackRole::names();
    names.insert(EntryIdRole, "entryId");
    names.insert(IsCurrentRole, "isCurrent");
    return names;
}

} // namespace halvane
