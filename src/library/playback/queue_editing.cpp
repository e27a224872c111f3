// SPDX-License-Identifier: MIT
#include "library/playback/queue_editing.h"

#include "library/playback/collection_player.h"
#include "library/status_line.h"
#include "library/undo_history.h"
#include "library/user/language_setting.h"
#include "library/user/playlists.h"
#include "platform/thread_check.h"
#include "presentation/l10n.h"

namespace halvane {

namespace {

using Entries = PlayQueue::Entries;
using Pieces = std::vector<PlayQueue::Piece>;

constexpr auto inQueue = UndoHistory::Subject::queue;

QSet<QUuid> asSet(const std::vector<QUuid>& ids) {
    return {ids.cbegin(), ids.cend()};
}

std::size_t countOf(const std::vector<RowRange>& rows) {
    std::size_t count = 0;
    for (const RowRange& range : rows)
        count += range.count;
    return count;
}

} // namespace

QueueEditing::QueueEditing(const LibraryStore& store, const CollectionPlayer& collections,
                           Playlists& playlists, PlayQueue& queue, Transport& transport,
                           UndoHistory& history, StatusLine& status,
                           const LanguageSetting& language, QObject* parent)
    : QObject(parent)
    , m_store(store)
    , m_collections(collections)
    , m_playlists(playlists)
    , m_queue(queue)
    , m_transport(transport)
    , m_history(history)
    , m_status(status)
    , m_language(language) {
    connect(&queue, &PlayQueue::replaced, this, [this] { m_history.forget(inQueue); });
}

// What comes

TrackRows QueueEditing::tracksOf(const QStringList& paths) const {
    TrackRows tracks;
    for (const QString& path : paths) {
        if (TrackPtr track = m_store.track(path))
            tracks.push_back(std::move(track));
    }
    return tracks;
}

void QueueEditing::playNext(const QStringList& paths) {
    playNext(tracksOf(paths));
}

void QueueEditing::addToQueue(const QStringList& paths) {
    addToQueue(tracksOf(paths));
}

void QueueEditing::playAlbumNext(const QString& albumID) {
    playNext(m_collections.tracksOfAlbum(albumID));
}

void QueueEditing::addAlbumToQueue(const QString& albumID) {
    addToQueue(m_collections.tracksOfAlbum(albumID));
}

void QueueEditing::playArtistNext(const QString& name) {
    playNext(m_collections.tracksOfArtist(name));
}

void QueueEditing::addArtistToQueue(const QString& name) {
    addToQueue(m_collections.tracksOfArtist(name));
}

void QueueEditing::playPlaylistNext(const QUuid& id) {
    playNext(m_collections.tracksOfPlaylist(id));
}

void QueueEditing::addPlaylistToQueue(const QUuid& id) {
    addToQueue(m_collections.tracksOfPlaylist(id));
}

void QueueEditing::playLiveListNext(const QUuid& id) {
    playNext(m_collections.tracksOfLiveList(id));
}

void QueueEditing::addLiveListToQueue(const QUuid& id) {
    addToQueue(m_collections.tracksOfLiveList(id));
}

void QueueEditing::playNext(const TrackRows& tracks) {
    Entries entries = PlayQueue::entriesFor(tracks);
    if (entries.empty())
        return m_transport.showNothingToPlay();
    for (const PlayQueue::Entry& entry : entries)
        m_transport.askFor(entry.id);
    const QString message =
        L10n::playsNext(entries.front().record->title, static_cast<qint64>(entries.size()),
                        m_language.resolvedLanguage());
    insert(rowOfNext(m_queue.currentRow()), std::move(entries), L10nKey::playNextCommand, message);
}

void QueueEditing::addToQueue(const TrackRows& tracks) {
    Entries entries = PlayQueue::entriesFor(tracks);
    if (entries.empty())
        return m_transport.showNothingToPlay();
    const QString message =
        L10n::addedToQueue(entries.front().record->title, static_cast<qint64>(entries.size()),
                           m_language.resolvedLanguage());
    insert(m_queue.size(), std::move(entries), L10nKey::addToQueue, message);
}

void QueueEditing::insertBefore(const QStringList& paths, const QUuid& entry) {
    Entries entries = PlayQueue::entriesFor(tracksOf(paths));
    if (entries.empty())
        return;
    const QString message =
        L10n::addedToQueue(entries.front().record->title, static_cast<qint64>(entries.size()),
                           m_language.resolvedLanguage());
    insert(m_queue.rowOfID(entry).value_or(m_queue.size()), std::move(entries), L10nKey::addToQueue,
           message);
}

void QueueEditing::insert(std::size_t row, Entries entries, L10nKey name, const QString& message) {
    assertOwnThread(*this);
    std::vector<QUuid> ids;
    ids.reserve(entries.size());
    for (const PlayQueue::Entry& entry : entries)
        ids.push_back(entry.id);
    // Beside one entry at most, they are the user's own choice, and the queue is no collection.
    const auto before = m_queue.sourceLabel();
    const auto after = m_queue.size() > 1 ? before : std::nullopt;
    m_queue.insert(row, std::move(entries));
    m_queue.setSourceLabel(after);
    m_transport.replanSuccessor();
    const auto gone = std::make_shared<Pieces>();
    m_history.add({name, inQueue,
                   [this, ids, gone, before] {
                       *gone = takeOut(m_queue.rowsOf(asSet(ids)));
                       m_queue.setSourceLabel(before);
                   },
                   [this, gone, after] {
                       putBack(std::exchange(*gone, {}));
                       m_queue.setSourceLabel(after);
                   }});
    m_status.showWithUndo(message);
}

// What goes

void QueueEditing::removeEntry(const QUuid& id) {
    removeEntries({id});
}

void QueueEditing::removeEntries(const QList<QUuid>& ids) {
    const auto rows = m_queue.rowsOf(QSet<QUuid>(ids.cbegin(), ids.cend()));
    if (rows.empty())
        return;
    const QString message =
        L10n::removedFromQueue(m_queue.record(rows.front().first).title,
                               static_cast<qint64>(countOf(rows)), m_language.resolvedLanguage());
    remove(rows, L10nKey::removeFromQueue, message);
}

void QueueEditing::clear() {
    const auto current = m_queue.currentRow();
    const bool staysCurrent = current && m_transport.hasLoadedFile();
    std::vector<RowRange> rows;
    if (!staysCurrent) {
        rows.push_back({0, m_queue.size()});
    } else {
        rows.push_back({0, *current});
        rows.push_back({*current + 1, m_queue.size() - *current - 1});
    }
    std::erase_if(rows, [](const RowRange& range) { return range.count == 0; });
    if (!rows.empty())
        remove(rows, L10nKey::clearQueue,
               L10n::text(L10nKey::queueCleared, m_language.resolvedLanguage()));
}

void QueueEditing::remove(const std::vector<RowRange>& rows, L10nKey name, const QString& message) {
    assertOwnThread(*this);
    const auto gone = std::make_shared<Pieces>(takeOut(rows));
    std::vector<QUuid> ids;
    for (const PlayQueue::Piece& piece : *gone) {
        for (const PlayQueue::Entry& entry : piece.entries)
            ids.push_back(entry.id);
    }
    m_history.add({name, inQueue, [this, gone] { putBack(std::exchange(*gone, {})); },
                   [this, gone, ids] { *gone = takeOut(m_queue.rowsOf(asSet(ids))); }});
    m_status.showWithUndo(message);
}

Pieces QueueEditing::takeOut(const std::vector<RowRange>& rows) {
    m_transport.leave(rows);
    auto gone = m_queue.takeOut(rows);
    m_transport.replanSuccessor();
    return gone;
}

void QueueEditing::putBack(Pieces pieces) {
    // Tracks have been read again meanwhile, or have left the library.
    for (PlayQueue::Piece& piece : pieces) {
        for (PlayQueue::Entry& entry : piece.entries)
            entry.record = m_store.track(entry.record->path());
        std::erase_if(piece.entries, [](const auto& entry) { return !entry.record; });
    }
    std::erase_if(pieces, [](const auto& piece) { return piece.entries.empty(); });
    m_queue.putBack(pieces);
    m_transport.replanSuccessor();
}

// What moves

void QueueEditing::beginMove(const QUuid& id) {
    m_moved = id;
    m_movedFrom = m_queue.before(id);
}

void QueueEditing::moveNext(const QUuid& id) {
    const auto row = m_queue.rowOfID(id);
    const auto current = m_queue.currentRow();
    if (!row || row == current)
        return;
    m_transport.askFor(id);
    beginMove(id);
    m_queue.moveBehind(id, current ? m_queue.idAt(*current) : QUuid());
    addMove(L10nKey::playNextCommand);
}

void QueueEditing::endMove() {
    addMove(L10nKey::moveInQueue);
}

void QueueEditing::addMove(L10nKey name) {
    const QUuid id = std::exchange(m_moved, QUuid());
    m_transport.replanSuccessor();
    if (!m_queue.rowOfID(id) || m_queue.before(id) == m_movedFrom)
        return;
    const auto mover = [this, id](const QUuid& before) {
        return [this, id, before] {
            m_queue.moveBehind(id, before);
            m_transport.replanSuccessor();
        };
    };
    m_history.add({name, inQueue, mover(m_movedFrom), mover(m_queue.before(id))});
}

// What is kept

QString QueueEditing::suggestedName() const {
    const auto shared = [this](auto textOf) {
        const QString first = m_queue.isEmpty() ? QString() : textOf(m_queue.record(0)).trimmed();
        for (std::size_t row = 1; row < m_queue.size() && !first.isEmpty(); ++row) {
            if (textOf(m_queue.record(row)).trimmed() != first)
                return QString();
        }
        return first;
    };
    QString name = shared([](const Track& track) { return track.album; });
    if (name.isEmpty())
        name = shared([](const Track& track) { return track.artist; });
    return name.isEmpty()
               ? L10n::dialogTitle(L10n::text(L10nKey::newPlaylist, m_language.resolvedLanguage()))
               : name;
}

void QueueEditing::saveAsPlaylist(const QString& name) {
    const QUuid playlist = m_playlists.createPlaylist(name);
    if (playlist.isNull())
        return;
    QStringList paths;
    for (const TrackPtr& record : m_queue.records())
        paths.append(record->path());
    m_playlists.addTrackPaths(paths, playlist);
    m_status.show(L10n::savedAsPlaylist(name.trimmed(), m_language.resolvedLanguage()), false);
}

} // namespace halvane
