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

std::optional<QString> CollectionPlayer::firstPlayable(const TrackRows& tracks) const {
    for (const TrackPtr& track : tracks) {
        const QString path = track->path();
        if (!path.isEmpty() && m_with.files.state(path) == TrackAvailability::available)
            return path;
    }
    return std::nullopt;
}

TrackRows CollectionPlayer::tracksWhere(
    const std::function<bool(const Catalog&, std::size_t row)>& belongs) const {
    const Catalog& catalog = *m_with.catalog.catalog();
    TrackRows tracks;
    for (std::size_t row = 0; row < catalog.rows->size(); ++row) {
        if (belongs(catalog, row))
            tracks.push_back((*catalog.rows)[row]);
    }
    return tracks;
}

void CollectionPlayer::playTrack(const QUuid& withID) {
    const TrackPtr track = m_with.store.trackWithID(withID);
    if (!track)
        return;
    if (!track->sourceURL)
        return m_with.transport.showNothingToPlay();
    if (const auto row = m_with.queue.rowOfPath(track->path()))
        return m_with.transport.playItem(m_with.queue.idAt(*row), true);
    const std::size_t row = m_with.queue.append({track});
    m_with.transport.playItem(m_with.queue.idAt(row), true);
}

void CollectionPlayer::playAlbum(const QString& withID) {
    m_with.browsing.setSelectedAlbumID(withID);
    const TrackRows tracks = tracksWhere([&](const Catalog& catalog, std::size_t row) {
        return catalog.albums[catalog.albumOfRow[row]].id == withID;
    });
    const auto start = firstPlayable(tracks);
    if (!start)
        return m_with.transport.showNothingToPlay();
    if (m_with.transport.isTrackPlaying(*start)) {
        if (!m_with.transport.isPlaying())
            m_with.transport.togglePlayback();
        return;
    }
    const Album* album = m_with.catalog.catalog()->albumWithID(withID);
    m_with.transport.playCollection(tracks, *start, album ? album->title : QString());
}

void CollectionPlayer::playArtist(const QString& name) {
    const TrackRows tracks = tracksWhere([&](const Catalog& catalog, std::size_t row) {
        return (*catalog.rows)[row]->artist == name;
    });
    if (const auto start = firstPlayable(tracks))
        m_with.transport.playCollection(tracks, *start, name);
    else
        m_with.transport.showNothingToPlay();
}

void CollectionPlayer::playPlaylist(const QUuid& id) {
    const Playlist* playlist = m_with.playlists.find(id);
    if (!playlist)
        return;
    const TrackRows tracks = orderedTracks(*playlist, m_with.store);
    if (const auto start = firstPlayable(tracks))
        m_with.transport.playCollection(tracks, *start, playlist->name);
    else
        m_with.transport.showNothingToPlay();
}

} // namespace halvane
