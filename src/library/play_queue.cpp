// SPDX-License-Identifier: MIT
#include "library/play_queue.h"

#include "library/cover_store.h"
#include "library/row_ranges.h"
#include "library/thread_check.h"
#include "library/track_conversion.h"

#include <algorithm>
#include <iterator>

namespace halvane {

namespace {

const QString& pathOf(const Track& record) {
    return record.sourceURL->standardizedPath(); // entries are made for files only
}

} // namespace

PlayQueue::PlayQueue(RowState state, QObject* parent)
    : QAbstractListModel(parent)
    , m_state(std::move(state)) {
}

QueueItem PlayQueue::item(std::size_t row) const {
    QueueItem item = *queueItemFromTrack(record(row));
    item.id = m_entries[row].id;
    item.isPlaying = m_current == row;
    return item;
}

std::optional<std::size_t> PlayQueue::rowOfID(const QUuid& id) const {
    const auto found = std::find_if(m_entries.cbegin(), m_entries.cend(),
                                    [&](const Entry& entry) { return entry.id == id; });
    return found == m_entries.cend() ? std::nullopt
                                     : std::optional<std::size_t>(found - m_entries.cbegin());
}

std::optional<std::size_t> PlayQueue::rowOfPath(const QString& path) const {
    const auto found = std::find_if(m_entries.cbegin(), m_entries.cend(), [&](const Entry& entry) {
        return pathOf(*entry.record) == path;
    });
    return found == m_entries.cend() ? std::nullopt
                                     : std::optional<std::size_t>(found - m_entries.cbegin());
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
            emitRow(*changed, {IsCurrentRole});
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
    assertOwnThread(*this);
    beginResetModel();
    m_entries = entriesFor(tracks);
    const bool hadCurrent = m_current.has_value();
    m_current.reset();
    endResetModel();
    setSourceLabel(sourceLabel);
    if (hadCurrent)
        Q_EMIT currentChanged();
    Q_EMIT entriesChanged();
}

TrackRows PlayQueue::records() const {
    TrackRows records;
    records.reserve(m_entries.size());
    for (const Entry& entry : m_entries)
        records.push_back(entry.record);
    return records;
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
    assertOwnThread(*this);
    const std::size_t first = m_entries.size();
    if (entries.empty())
        return first;
    beginInsertRows({}, static_cast<int>(first), static_cast<int>(first + entries.size() - 1));
    if (m_entries.empty()) {
        m_entries = std::move(entries);
    } else {
        if (m_entries.capacity() < first + entries.size())
            m_entries.reserve(std::max(first + entries.size(), first + first / 2));
        std::move(entries.begin(), entries.end(), std::back_inserter(m_entries));
    }
    endInsertRows();
    Q_EMIT entriesChanged();
    return first;
}

void PlayQueue::remove(const QSet<QString>& paths) {
    assertOwnThread(*this);
    std::vector<RowRange> gone;
    for (std::size_t row = 0; row < m_entries.size(); ++row) {
        if (paths.contains(pathOf(record(row))))
            addRow(gone, row);
    }
    if (gone.empty())
        return;
    const QUuid current = m_current ? idAt(*m_current) : QUuid();
    if (gone.size() > mostNarrowRanges) {
        beginResetModel();
        std::vector<Entry> kept;
        kept.reserve(m_entries.size());
        std::size_t row = 0;
        for (const RowRange& range : gone) {
            for (; row < range.first; ++row)
                kept.push_back(std::move(m_entries[row]));
            row += range.count;
        }
        for (; row < m_entries.size(); ++row)
            kept.push_back(std::move(m_entries[row]));
        m_entries = std::move(kept);
        m_current = m_current ? rowOfID(current) : std::nullopt;
        endResetModel();
    } else {
        for (auto range = gone.crbegin(); range != gone.crend(); ++range) {
            const auto begin = m_entries.begin() + static_cast<std::ptrdiff_t>(range->first);
            const auto end = begin + static_cast<std::ptrdiff_t>(range->count);
            beginRemoveRows({}, static_cast<int>(range->first),
                            static_cast<int>(range->first + range->count - 1));
            m_entries.erase(begin, end);
            m_current = m_current ? rowOfID(current) : std::nullopt;
            endRemoveRows();
        }
    }
    if (!current.isNull() && !m_current)
        Q_EMIT currentChanged();
    Q_EMIT entriesChanged();
}

void PlayQueue::replace(const TrackRows& tracks) {
    assertOwnThread(*this);
    QHash<QString, TrackPtr> fresh;
    for (const TrackPtr& track : tracks)
        fresh.insert(track->path(), track);
    for (std::size_t row = 0; row < m_entries.size(); ++row) {
        const auto found = fresh.constFind(pathOf(record(row)));
        if (found == fresh.cend())
            continue;
        m_entries[row].record = *found;
        emitRow(row, {});
        if (m_current == row)
            Q_EMIT currentRecordChanged();
    }
}

void PlayQueue::move(const QUuid& id, const QUuid& toPositionOf) {
    assertOwnThread(*this);
    const auto from = rowOfID(id);
    const auto to = rowOfID(toPositionOf);
    if (!from || !to || from == to)
        return;
    // Down it lands behind the target, up before it.
    const int before = static_cast<int>(*to) + (*to > *from ? 1 : 0);
    beginMoveRows({}, static_cast<int>(*from), static_cast<int>(*from), {}, before);
    const auto at = [&](std::size_t row) {
        return m_entries.begin() + static_cast<std::ptrdiff_t>(row);
    };
    if (*from < *to)
        std::rotate(at(*from), at(*from + 1), at(*to + 1));
    else
        std::rotate(at(*to), at(*from), at(*from + 1));
    if (m_current == from)
        m_current = to;
    else if (m_current && *from < *m_current && *m_current <= *to)
        --*m_current;
    else if (m_current && *to <= *m_current && *m_current < *from)
        ++*m_current;
    endMoveRows();
    Q_EMIT entriesChanged();
}

void PlayQueue::refresh(const QString& path, const QList<int>& roles) {
    for (std::size_t row = 0; row < m_entries.size(); ++row) {
        if (m_entries[row].record->path() == path)
            emitRow(row, roles);
    }
}

void PlayQueue::refreshAll(const QList<int>& roles) {
    if (!m_entries.empty())
        Q_EMIT dataChanged(index(0), index(rowCount() - 1), roles);
}

void PlayQueue::emitRow(std::size_t row, const QList<int>& roles) {
    const QModelIndex changed = index(static_cast<int>(row));
    Q_EMIT dataChanged(changed, changed, roles);
}

int PlayQueue::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(m_entries.size());
}

QVariant PlayQueue::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const auto row = static_cast<std::size_t>(index.row());
    const Track& track = record(row);
    switch (role) {
    case EntryIdRole:
        return m_entries[row].id;
    case Qt::DisplayRole:
    case TitleRole:
        return track.title;
    case ArtistRole:
        return track.artist;
    case AlbumRole:
        return track.album;
    case DurationRole:
        return track.duration;
    case PathRole:
        return pathOf(track);
    case IsCurrentRole:
        return m_current == row;
    case AvailabilityRole:
        return QVariant::fromValue(m_state.availability(pathOf(track)));
    case IsLovedRole:
        return m_state.isLoved(pathOf(track));
    case CoverKeyRole:
        return m_state.covers->keyFor(track.coverImageData, track.coverURL);
    default:
        return {};
    }
}

QHash<int, QByteArray> PlayQueue::roleNames() const {
    return {{EntryIdRole, "entryId"},     {TitleRole, "title"},
            {ArtistRole, "artist"},       {AlbumRole, "album"},
            {DurationRole, "duration"},   {PathRole, "path"},
            {IsCurrentRole, "isCurrent"}, {AvailabilityRole, "availability"},
            {IsLovedRole, "isLoved"},     {CoverKeyRole, "coverKey"}};
}

} // namespace halvane
