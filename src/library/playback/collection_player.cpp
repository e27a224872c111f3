// SPDX-License-Identifier: MIT
#include "library/playback/collection_player.h"

namespace halvane {

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
                                   QObject* parent)
    : QObject(parent)
    , m_store(store)
    , m_catalog(catalog)
    , m_playlists(playlists)
    , m_files(files)
    , m_browsing(browsing)
    , m_queue(queue)
    , m_transport(transport) {
}

std::optional<QString> CollectionPlayer::firstPlayable(const TrackRows& tracks) const {
    for (const TrackPtr& track : tracks) {
        const QString path = track->path();
        if (!path.isEmpty() && m_files.state(path) == TrackAvailability::available)
            return path;
    }
    return std::nullopt;
}

TrackRows CollectionPlayer::tracksWhere(
    const std::function<bool(const Catalog&, std::size_t row)>& belongs) const {
    const Catalog& catalog = *m_catalog.published();
    TrackRows tracks;
    for (std::size_t row = 0; row < catalog.rows->size(); ++row) {
        if (belongs(catalog, row))
            tracks.push_back((*catalog.rows)[row]);
    }
    return tracks;
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

void CollectionPlayer::playAlbum(const QString& withID) {
    m_browsing.setSelectedAlbumID(withID);
    const TrackRows tracks = tracksWhere([&](const Catalog& catalog, std::size_t row) {
        return catalog.albums[catalog.albumOfRow[row]].id == withID;
    });
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

void CollectionPlayer::playArtist(const QString& name) {
    const TrackRows tracks = tracksWhere([&](const Catalog& catalog, std::size_t row) {
        return (*catalog.rows)[row]->artist == name;
    });
    if (const auto start = firstPlayable(tracks))
        m_transport.playCollection(tracks, *start, name);
    else
        m_transport.showNothingToPlay();
}

void CollectionPlayer::playPlaylist(const QUuid& id) {
    const Playlist* playlist = m_playlists.find(id);
    if (!playlist)
        return;
    const TrackRows tracks = orderedTracks(*playlist, m_store);
    if (const auto start = firstPlayable(tracks))
        m_transport.playCollection(tracks, *start, playlist->name);
    else
        m_transport.showNothingToPlay();
}

} // namespace halvane
