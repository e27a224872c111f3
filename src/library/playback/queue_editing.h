// SPDX-License-Identifier: MIT
#pragma once

#include "library/playback/play_queue.h"

namespace halvane {

class CollectionPlayer;
class LanguageSetting;
class LibraryStore;
class Playlists;
class StatusLine;
class Transport;
class UndoHistory;
enum class L10nKey;

/// The row where entries stand that are to play next.
constexpr std::size_t rowOfNext(std::optional<std::size_t> current) {
    return current ? *current + 1 : 0;
}

/// What the user does to the queue. What plays goes on, except that an entry that is taken out
/// while it plays gives way to the one that follows. Nothing begins to play by an edit. Every edit
/// can be taken back until another collection becomes the queue. Main thread.
class QueueEditing : public QObject {
    Q_OBJECT

  public:
    /// All references must outlive it.
    QueueEditing(const LibraryStore& store, const CollectionPlayer& collections,
                 Playlists& playlists, PlayQueue& queue, Transport& transport, UndoHistory& history,
                 StatusLine& status, const LanguageSetting& language, QObject* parent = nullptr);

    /// The tracks stand behind the current entry, in this order; at the beginning without one.
    /// Shuffle plays them next, too. Paths that the library does not hold are left out.
    Q_INVOKABLE void playNext(const QStringList& paths);
    Q_INVOKABLE void addToQueue(const QStringList& paths);
    /// The tracks stand before an entry, or at the end for an id that the queue does not hold.
    Q_INVOKABLE void insertBefore(const QStringList& paths, const QUuid& entry);
    // The same for the tracks of a collection, in the order in which it would play.
    Q_INVOKABLE void playAlbumNext(const QString& albumID);
    Q_INVOKABLE void addAlbumToQueue(const QString& albumID);
    Q_INVOKABLE void playArtistNext(const QString& name);
    Q_INVOKABLE void addArtistToQueue(const QString& name);
    Q_INVOKABLE void playPlaylistNext(const QUuid& id);
    Q_INVOKABLE void addPlaylistToQueue(const QUuid& id);
    Q_INVOKABLE void playLiveListNext(const QUuid& id);
    Q_INVOKABLE void addLiveListToQueue(const QUuid& id);

    Q_INVOKABLE void removeEntry(const QUuid& id);
    void removeEntries(const QList<QUuid>& ids);
    /// Leaves what plays or is paused, and nothing else.
    Q_INVOKABLE void clear();

    /// Moves an entry behind the current one. Shuffle plays it next, too.
    Q_INVOKABLE void moveNext(const QUuid& id);
    /// The user takes hold of an entry. What PlayQueue::move does with it until endMove() is one
    /// edit.
    Q_INVOKABLE void beginMove(const QUuid& id);
    Q_INVOKABLE void endMove();

    /// A name for a playlist of the queue: the album's or the artist's, where it is all of one.
    Q_INVOKABLE [[nodiscard]] QString suggestedName() const;
    /// A new playlist of the queue's files in their order, each once. Does nothing for a blank
    /// name.
    Q_INVOKABLE void saveAsPlaylist(const QString& name);

  private:
    void playNext(const TrackRows& tracks);
    void addToQueue(const TrackRows& tracks);
    void addMove(L10nKey name);
    void insert(std::size_t row, PlayQueue::Entries entries, L10nKey name, const QString& message);
    void remove(const std::vector<RowRange>& rows, L10nKey name, const QString& message);
    [[nodiscard]] TrackRows tracksOf(const QStringList& paths) const;
    // Parts of edits, which tell nobody.
    std::vector<PlayQueue::Piece> takeOut(const std::vector<RowRange>& rows);
    void putBack(std::vector<PlayQueue::Piece> pieces);

    const LibraryStore& m_store;
    const CollectionPlayer& m_collections;
    Playlists& m_playlists;
    PlayQueue& m_queue;
    Transport& m_transport;
    UndoHistory& m_history;
    StatusLine& m_status;
    const LanguageSetting& m_language;
    QUuid m_moved;     ///< null: nothing is being moved
    QUuid m_movedFrom; ///< the entry that was before it
};

} // namespace halvane
