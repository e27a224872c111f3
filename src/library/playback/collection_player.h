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
                     PlayQueue& queue, Transport& transport,
                     RandomIndex random = systemRandomIndex(), QObject* parent = nullptr);

    /// Plays a track that was clicked on, in the queue as it is. A track that the queue does not
    /// have is put at its end.
    Q_INVOKABLE void playTrack(const QUuid& withID);
    /// Plays a track of the track table. Where the user has sorted the table, its tracks become the
    /// queue in that order; else the queue stays as it is.
    Q_INVOKABLE void playInTable(const QUuid& withID);
    /// Plays these tracks of the table, in this order.
    Q_INVOKABLE void playTogether(const QStringList& paths);
    /// Selects the album and plays it. If its first track is current already, it only resumes.
    Q_INVOKABLE void playAlbum(const QString& withID);
    /// Shuffles from now on, and plays the album from any of its tracks.
    Q_INVOKABLE void shuffleAlbum(const QString& withID);
    Q_INVOKABLE void playArtist(const QString& name);
    /// The same for an artist.
    Q_INVOKABLE void shuffleArtist(const QString& name);
    Q_INVOKABLE void playPlaylist(const QUuid& id);
    /// Of a live list that the user has made.
    Q_INVOKABLE void playLiveList(const QUuid& id);
    // The files of what these play, in its order.
    Q_INVOKABLE [[nodiscard]] QStringList pathsOfAlbum(const QString& withID) const;
    Q_INVOKABLE [[nodiscard]] QStringList pathsOfArtist(const QString& name) const;

    // The tracks of a collection in the order in which they play; none for an unknown one.
    [[nodiscard]] TrackRows tracksOfAlbum(const QString& id) const;
    [[nodiscard]] TrackRows tracksOfArtist(const QString& name) const;
    [[nodiscard]] TrackRows tracksOfPlaylist(const QUuid& id) const;
    [[nodiscard]] TrackRows tracksOfLiveList(const QUuid& id) const;

  private:
    [[nodiscard]] std::optional<QString> firstPlayable(const TrackRows& tracks) const;
    [[nodiscard]] bool isQueued(const TrackRows& tracks) const;
    void play(const TrackRows& tracks, const QString& label);
    void shuffle(const TrackRows& tracks, const QString& label);

    const LibraryStore& m_store;
    const CatalogPublisher& m_catalog;
    const Playlists& m_playlists;
    const FileAvailability& m_files;
    Browsing& m_browsing;
    PlayQueue& m_queue;
    Transport& m_transport;
    const RandomIndex m_random;
};

} // namespace halvane
