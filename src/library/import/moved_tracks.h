// SPDX-License-Identifier: MIT
#pragma once

#include "library/catalog/library_store.h"
#include "platform/serial_worker.h"

#include <QObject>

namespace halvane {

class Availability;
class CatalogPublisher;
class LanguageSetting;
class PlayQueue;
class Playlists;
class SoundMemory;
class StatusLine;
class Tidying;
class Transport;

/// What MovedTracks works on.
struct MovedTracksNeeds {
    LibraryStore& store;
    CatalogPublisher& catalog;
    PlayQueue& queue;
    Transport& transport;
    Playlists& playlists;
    Tidying& tidying;
    const Availability& availability;
    const SoundMemory& sounds;
};

/// The path of a file that is gone, and of the one that it has become.
using Move = std::pair<QString, QString>;

/// Which of the files that came are those that are gone, all of one sound: one for one, the names
/// that end alike first. Pure.
std::vector<Move> movesBetween(const QStringList& gone, QStringList came);

/// Lets a file that was renamed or moved keep its row. Where a file that came in this run has the
/// sound of a missing one, it takes that one's place in the library, the queue and the playlists.
/// What is missing because its drive is away keeps its own row. Main thread.
class MovedTracks : public QObject {
    Q_OBJECT

  public:
    /// All references must outlive it.
    MovedTracks(const MovedTracksNeeds& needs, StatusLine& status, const LanguageSetting& language,
                QObject* parent = nullptr);

    /// Looks for such files. To be called when sounds have been compared, and when missing files
    /// are known.
    void settle();

  Q_SIGNALS:
    /// Tracks have other paths now.
    void moved();

  private:
    [[nodiscard]] std::vector<Move> likelyMoves() const;
    void take(const std::vector<Move>& moves);
    void takePlacesInQueue(QHash<QString, TrackPtr> newcomers);
    void takeRows(const QHash<QString, TrackPtr>& newcomers);

    const MovedTracksNeeds m_needs;
    StatusLine& m_status;
    const LanguageSetting& m_language;
    QSet<QString> m_came; ///< in this run
    SerialWorker m_worker{SerialWorker::Priority::low};
};

} // namespace halvane
