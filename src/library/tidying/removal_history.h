// SPDX-License-Identifier: MIT
#pragma once

#include "library/catalog/library_store.h"
#include "library/playback/play_queue.h"
#include "library/user/live_lists.h"
#include "library/user/playlists.h"
#include "library/user/track_user_data.h"
#include "model/enums.h"

namespace halvane {

class CatalogPublisher;
class ImportedPaths;
class LanguageSetting;
class StatusLine;
class Tidying;
class Transport;
class UndoHistory;
enum class L10nKey;

/// What a Removal works on.
struct RemovalNeeds {
    LibraryStore& store;
    CatalogPublisher& catalog;
    ImportedPaths& importedPaths;
    PlayQueue& queue;
    Transport& transport;
    Playlists& playlists;
    LiveLists& liveLists;
    TrackUserData& userData;
    Tidying& tidying;
};

/// Lets the user take back that tracks left the library, that a playlist or a live list was
/// deleted, or that a track left a playlist. Tracks come back to their places in the library, in
/// the playlists and in the queue, unless that is another one by then, with what was said of them.
/// Main thread.
class RemovalHistory : public QObject {
    Q_OBJECT

  public:
    /// All references must outlive it.
    RemovalHistory(const RemovalNeeds& needs, UndoHistory& history, StatusLine& status,
                   const LanguageSetting& language, QObject* parent = nullptr);

  Q_SIGNALS:
    /// Tracks have come back to the library.
    void cameBack();

  private:
    /// What the library lost.
    struct Lost {
        std::vector<LibraryStore::PlacedTrack> tracks;
        std::vector<Playlists::Place> places;
        std::vector<PlayQueue::Piece> entries;
        quint64 queueMade = 0; ///< the number of the queue
        std::vector<std::pair<QString, Said>> said;
    };

    void remember(const QStringList& paths);
    void bringBack(const Lost& lost);
    /// A playlist or a live list that is about to go. `sentence` says of a name that it went.
    template<typename Lists>
    void rememberList(Lists& lists, const QUuid& id, L10nKey what,
                      QString (*sentence)(const QString&, ResolvedLanguage));
    void rememberPaths(const QStringList& paths, const QUuid& playlist);

    const RemovalNeeds m_needs;
    UndoHistory& m_history;
    StatusLine& m_status;
    const LanguageSetting& m_language;
    quint64 m_queuesMade = 0;
};

} // namespace halvane
