// SPDX-License-Identifier: MIT
#include "library/playback/collection_player.h"

namespace halvane {

namespace {

// Of those that have a file.
QStringList pathsOf(const TrackRows& tracks) {
    QStringList paths;
    for (const TrackPtr& track : tracks)
        if (QString path = track->path(); !path.isEmpty())
            paths.append(std::move(path));
    return paths;
}

} // namespace

TrackRows orderedTracks(const Playlist& in, const LibraryStore& store) {
    TrackRows tracks;
    for (const QString& path : in.trackPaths) {
        if (TrackPtr track = store.track(path))
            tracks.push_back(std::move(track));
    }
    return tracks;
}

CollectionPlayer::CollectionPlayer(const LibraryStore& store, const CatalogPublisher& catalog,
                                   const Playlists& playlists, const FileAvailability& files,
                                   Browsing& browsing, PlayQueue& queue, Transport& transport,
                                   RandomIndex random, QObject* parent)
    : QObject(parent)
    , m_store(store)
    , m_catalog(catalog)
    , m_playlists(playlists)
    , m_files(files)
    , m_browsing(browsing)
    , m_queue(queue)
    , m_transport(transport)
    , m_random(std::move(random)) {
}

std::optional<QString> CollectionPlayer::firstPlayable(const TrackRows& tracks) const {
    for (const TrackPtr& track : tracks) {
        const QString path = track->path();
        if (!path.isEmpty() && m_files.state(path) == TrackAvailability::available)
            return path;
    }
    return std::nullopt;
}

TrackRows CollectionPlayer::tracksOfAlbum(const QString& id) const {
    const Catalog& now = *m_catalog.published();
    return now.tracksAt(now.rowsOfAlbum(id));
}

TrackRows CollectionPlayer::tracksOfArtist(const QString& name) const {
    const Catalog& now = *m_catalog.published();
    return now.tracksAt(now.rowsOfArtist(name));
}

TrackRows CollectionPlayer::tracksOfPlaylist(const QUuid& id) const {
    const Playlist* playlist = m_playlists.find(id);
    return playlist ? orderedTracks(*playlist, m_store) : TrackRows();
}

TrackRows CollectionPlayer::tracksOfLiveList(const QUuid& id) const {
    return m_browsing.liveListTracks().tracksOf(id);
}

void CollectionPlayer::playTrack(const QUuid& withID) {
    const TrackPtr track = m_store.trackWithID(withID);
    if (!track)
        return;
    if (!track->sourceURL)
        return m_transport.showNothingToPlay();
    if (const auto row = m_queue.rowOfPath(track->path()))
        return m_transport.playItem(m_queue.idAt(*row), true);
    const std::size_t row = m_queue.append({track});
    m_transport.playItem(m_queue.idAt(row), true);
}

bool CollectionPlayer::isQueued(const TrackRows& tracks) const {
    if (tracks.size() != m_queue.size())
        return false;
    for (std::size_t row = 0; row < tracks.size(); ++row)
        if (tracks[row].get() != &m_queue.record(row))
            return false;
    return true;
}

void CollectionPlayer::playInTable(const QUuid& withID) {
    const TrackRows sorted = m_browsing.sortedTracks();
    const TrackPtr track = sorted.empty() ? nullptr : m_store.trackWithID(withID);
    const QString path = track ? track->path() : QString();
    // One that plays is paused, and one that can't play is no reason to lose the queue.
    if (path.isEmpty() || m_transport.isTrackPlaying(path) ||
        m_files.state(path) != TrackAvailability::available || isQueued(sorted))
        return playTrack(withID);
    m_transport.playCollection(sorted, path, m_browsing.sortedPlace());
}

void CollectionPlayer::playTogether(const QStringList& paths) {
    TrackRows tracks;
    for (const QString& path : paths)
        if (TrackPtr track = m_store.track(path))
            tracks.push_back(std::move(track));
    const QString playlist = m_browsing.selectedPlaylistName();
    play(tracks, playlist.isEmpty() ? m_browsing.sortedPlace() : playlist);
}

void CollectionPlayer::play(const TrackRows& tracks, const QString& label) {
    if (const auto start = firstPlayable(tracks))
        m_transport.playCollection(tracks, *start, label);
    else
        m_transport.showNothingToPlay();
}

void CollectionPlayer::playAlbum(const QString& withID) {
    m_browsing.selectPlayedAlbum(withID);
    const TrackRows tracks = tracksOfAlbum(withID);
    const auto start = firstPlayable(tracks);
    if (!start)
        return m_transport.showNothingToPlay();
    if (m_transport.isTrackPlaying(*start)) {
        if (!m_transport.isPlaying())
            m_transport.togglePlayback();
        return;
    }
    const Album* album = m_catalog.published()->albumWithID(withID);
    m_transport.playCollection(tracks, *start, album ? album->title : QString());
}

void CollectionPlayer::shuffle(const TrackRows& tracks, const QString& label) {
    QStringList playable = pathsOf(tracks);
    playable.removeIf([this](const QString& path) {
        return m_files.state(path) != TrackAvailability::available;
    });
    if (playable.isEmpty())
        return m_transport.showNothingToPlay();
    if (!m_transport.isShuffleEnabled())
        m_transport.toggleShuffle();
    const auto start = static_cast<qsizetype>(m_random(static_cast<std::size_t>(playable.size())));
    m_transport.playCollection(tracks, playable[start], label);
}

void CollectionPlayer::shuffleAlbum(const QString& withID) {
    const Album* album = m_catalog.published()->albumWithID(withID);
    shuffle(tracksOfAlbum(withID), album ? album->title : QString());
}

void CollectionPlayer::shuffleArtist(const QString& name) {
    shuffle(tracksOfArtist(name), name);
}

void CollectionPlayer::playArtist(const QString& name) {
    play(tracksOfArtist(name), name);
}

void CollectionPlayer::playPlaylist(const QUuid& id) {
    if (const Playlist* playlist = m_playlists.find(id))
        play(orderedTracks(*playlist, m_store), playlist->name);
}

void CollectionPlayer::playLiveList(const QUuid& id) {
    play(tracksOfLiveList(id), m_browsing.liveListTracks().nameOf(id));
}

QStringList CollectionPlayer::pathsOfAlbum(const QString& withID) const {
    return pathsOf(tracksOfAlbum(withID));
}

QStringList CollectionPlayer::pathsOfArtist(const QString& name) const {
    return pathsOf(tracksOfArtist(name));
}

} // namespace halvane
