// SPDX-License-Identifier: MIT
#pragma once

#include "library/browsing/browsing.h"
#include "library/playback/transport.h"
#include "library/user/playlists.h"

namespace halvane {

/// The tracks of a playlist that the library has, in the playlist's order.
TrackRows orderedTracks(const Playlist& in, const LibraryStore& store);

/// Gathers the tracks of an album, an artist or a playlist and has them played. Main thread.
class CollectionPlayer : public QObject {
    Q_OBJECT

  public:
    /// All references must outlive it.
    CollectionPlayer(const LibraryStore& store, const CatalogPublisher& catalog,
                     const Playlists& playlists, const FileAvailability& files, Browsing& browsing,
                     PlayQueue& queue, Transport& transport, QObject* parent = nullptr);

    /// Plays a track that was clicked on, in the queue as it is. A track that the queue does not
    /// have is put at its end.
    Q_INVOKABLE void playTrack(const QUuid& withID);
    /// Selects the album and plays it. If its first track is current already, it only resumes.
    Q_INVOKABLE void playAlbum(const QString& withID);
    Q_INVOKABLE void playArtist(const QString& name);
    Q_INVOKABLE void playPlaylist(const QUuid& id);

  private:
    [[nodiscard]] std::optional<QString> firstPlayable(const TrackRows& tracks) const;
    [[nodiscard]] TrackRows
    tracksWhere(const std::function<bool(const Catalog&, std::size_t row)>& belongs) const;

    const LibraryStore& m_store;
    const CatalogPublisher& m_catalog;
    const Playlists& m_playlists;
    const FileAvailability& m_files;
    Browsing& m_browsing;
    PlayQueue& m_queue;
    Transport& m_transport;
};

} // namespace halvane
