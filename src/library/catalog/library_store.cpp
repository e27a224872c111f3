// SPDX-License-Identifier: MIT
#include "library/catalog/library_store.h"

#include "platform/thread_check.h"

#include <algorithm>
#include <limits>

namespace halvane {

IndexedRows indexed(const TrackRows& tracks) {
    IndexedRows indexed;
    indexed.rows.reserve(tracks.size());
    indexed.rowOfPath.reserve(static_cast<qsizetype>(tracks.size()));
    for (const TrackPtr& track : tracks) {
        if (track->sourceURL) {
            const QString& path = track->sourceURL->standardizedPath();
            if (indexed.rowOfPath.contains(path))
                continue;
            indexed.rowOfPath.insert(path, static_cast<quint32>(indexed.rows.size()));
        }
        indexed.rows.push_back(track);
    }
    return indexed;
}

IndexedRows indexedWithout(const TrackRows& tracks, const QSet<QString>& paths) {
    TrackRows staying;
    staying.reserve(tracks.size());
    for (const TrackPtr& track : tracks) {
        if (!track->sourceURL || !paths.contains(track->sourceURL->standardizedPath()))
            staying.push_back(track);
    }
    return indexed(staying);
}

LibraryStore::LibraryStore(QObject* parent)
    : QObject(parent)
    , m_rows(std::make_shared<TrackRows>()) {
}

std::shared_ptr<const TrackRows> LibraryStore::snapshot() const {
    assertOwnThread(*this);
    m_isShared = true;
    return m_rows;
}

std::optional<std::size_t> LibraryStore::rowOf(const QString& path) const {
    const auto found = m_rowOfPath.constFind(path);
    return found == m_rowOfPath.cend() ? std::nullopt : std::optional<std::size_t>(*found);
}

TrackPtr LibraryStore::track(const QString& path) const {
    const auto row = rowOf(path);
    return row ? (*m_rows)[*row] : nullptr;
}

TrackPtr LibraryStore::trackWithID(const QUuid& id) const {
    const auto found = std::find_if(m_rows->cbegin(), m_rows->cend(),
                                    [&](const TrackPtr& track) { return track->id == id; });
    return found == m_rows->cend() ? nullptr : *found;
}

TrackRows& LibraryStore::writableRows() {
    assertOwnThread(*this);
    if (m_isShared) {
        m_rows = std::make_shared<TrackRows>(*m_rows);
        m_isShared = false;
    }
    return *m_rows;
}

void LibraryStore::changed() {
    ++m_revision;
    Q_EMIT tracksChanged();
}

std::size_t LibraryStore::append(const TrackRows& tracks) {
    const TrackRows added = appendNew(tracks);
    if (!added.empty())
        Q_EMIT came(added);
    return added.size();
}

TrackRows LibraryStore::appendNew(const TrackRows& tracks) {
    TrackRows& rows = writableRows();
    const std::size_t before = rows.size();
    // The capacity grows by halves, however small the batches are.
    if (rows.capacity() < before + tracks.size())
        rows.reserve(std::max(before + tracks.size(), before + before / 2));
    for (const TrackPtr& track : tracks) {
        if (track->sourceURL) {
            const QString& path = track->sourceURL->standardizedPath();
            if (m_rowOfPath.contains(path))
                continue;
            m_rowOfPath.insert(path, static_cast<quint32>(rows.size()));
        }
        rows.push_back(track);
    }
    const TrackRows added(rows.cbegin() + static_cast<std::ptrdiff_t>(before), rows.cend());
    if (!added.empty())
        changed();
    return added;
}

std::size_t LibraryStore::append(IndexedRows tracks) {
    assertOwnThread(*this);
    if (!m_rows->empty())
        return appendNew(tracks.rows).size();
    if (!tracks.rows.empty())
        assign(tracks);
    return m_rows->size();
}

void LibraryStore::assign(IndexedRows& tracks) {
    assertOwnThread(*this);
    m_rows = std::make_shared<TrackRows>(std::move(tracks.rows));
    m_isShared = false;
    m_rowOfPath.swap(tracks.rowOfPath);
    changed();
}

void LibraryStore::replace(const TrackRows& tracks) {
    TrackRows& rows = writableRows();
    TrackRows known;
    TrackRows before;
    for (const TrackPtr& track : tracks) {
        if (const auto row = rowOf(track->path())) {
            before.push_back(std::exchange(rows[*row], track));
            known.push_back(track);
        }
    }
    if (known.empty())
        return;
    changed();
    Q_EMIT replaced(known, before);
}

void LibraryStore::remove(const QSet<QString>& paths) {
    assertOwnThread(*this);
    std::vector<bool> goes(m_rows->size());
    std::size_t gone = 0;
    for (const QString& path : paths) {
        const auto found = m_rowOfPath.constFind(path);
        if (found == m_rowOfPath.cend())
            continue;
        goes[*found] = true;
        ++gone;
        m_rowOfPath.erase(found);
    }
    if (gone == 0)
        return;
    // A new list is no costlier than closing the gaps, and leaves the rows of a snapshot alone.
    auto rows = std::make_shared<TrackRows>();
    rows->reserve(m_rows->size() - gone);
    std::vector<quint32> movesTo(m_rows->size());
    for (std::size_t row = 0; row < goes.size(); ++row) {
        if (goes[row])
            continue;
        movesTo[row] = static_cast<quint32>(rows->size());
        rows->push_back((*m_rows)[row]);
    }
    m_rows = std::move(rows);
    m_isShared = false;
    for (quint32& row : m_rowOfPath)
        row = movesTo[row]; // no path is hashed again
    changed();
}

std::vector<LibraryStore::PlacedTrack> LibraryStore::placed(const QStringList& paths) const {
    std::vector<PlacedTrack> tracks;
    for (const QString& path : paths) {
        if (const auto row = rowOf(path))
            tracks.emplace_back(*row, (*m_rows)[*row]);
    }
    std::sort(tracks.begin(), tracks.end());
    tracks.erase(std::unique(tracks.begin(), tracks.end()), tracks.end());
    return tracks;
}

void LibraryStore::putBack(const std::vector<PlacedTrack>& tracks) {
    assertOwnThread(*this);
    auto rows = std::make_shared<TrackRows>();
    rows->reserve(m_rows->size() + tracks.size());
    std::vector<quint32> movesTo;
    movesTo.reserve(m_rows->size());
    const auto keepUpTo = [&](std::size_t place) {
        while (rows->size() < place && movesTo.size() < m_rows->size()) {
            movesTo.push_back(static_cast<quint32>(rows->size()));
            rows->push_back((*m_rows)[movesTo.size() - 1]);
        }
    };
    std::vector<std::pair<QString, quint32>> added;
    TrackRows back;
    for (const auto& [row, track] : tracks) {
        if (m_rowOfPath.contains(track->path()))
            continue;
        keepUpTo(row);
        added.emplace_back(track->path(), static_cast<quint32>(rows->size()));
        rows->push_back(track);
        back.push_back(track);
    }
    if (added.empty())
        return;
    keepUpTo(std::numeric_limits<std::size_t>::max());
    m_rows = std::move(rows);
    m_isShared = false;
    for (quint32& row : m_rowOfPath)
        row = movesTo[row]; // no path is hashed again
    for (const auto& [path, row] : added)
        m_rowOfPath.insert(path, row);
    changed();
    Q_EMIT came(back);
}

} // namespace halvane
