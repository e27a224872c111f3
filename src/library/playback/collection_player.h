// SPDX-License-Identifier: MIT
#pragma once

#include "library/browsing/browsing.h"
#include "library/playback/transport.h"
#include "library/user/playlists.h"

namespace halvane {

/// The tracks of a playlist that the library has, in the playlist's order.
TrackRows orderedTracks(const Playlist& in, const LibraryStore& store);

/// Gathers the tracks of an album, an artist or a playlist and has them played. Main thread.
class CollectionPlayer {
  public:
    struct Collaborators {
        const LibraryStore& store;
        const LibraryCatalog& catalog;
        const Playlists& playlists;
        const FileAvailability& files;
        Browsing& browsing;
        PlayQueue& queue;
        Transport& transport;
    };

    /// All collaborators outlive it.
    explicit CollectionPlayer(const Collaborators& with)
        : m_with(with) {}

    /// A click on a track: through the queue as it is, at whose end the track is put if need be.
    void playTrack(const QUuid& withID);
    /// Selects the album and plays it; when its first track is already current, only resumes.
    void playAlbum(const QString& withID);
    void playArtist(const QString& name);
    void playPlaylist(const QUuid& id);

  private:
    std::optional<QString> firstPlayable(const TrackRows& tracks) const;
    TrackRows
    tracksWhere(const std::function<bool(const Catalog&, std::size_t row)>& belongs) const;

    Collaborators m_with;
};

} // namespace halvane
