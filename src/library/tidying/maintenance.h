// SPDX-License-Identifier: MIT
#pragma once

#include "library/playback/play_queue.h"
#include "platform/serial_worker.h"

#include <QStringList>

#include <deque>

namespace halvane {

class Availability;
class CloudDownloads;
class Duplicates;
class Playlists;
class Preferences;
class StatusLine;
class TrackUserData;

/// Whom the maintenance works with. All of it outlives it; the functions are called on the main
/// thread.
struct MaintenanceCollaborators {
    LibraryStore& library;
    PlayQueue& queue;
    Playlists& playlists;
    TrackUserData& userData;
    Availability& availability;
    CloudDownloads& downloads;
    Duplicates& duplicates;
    StatusLine& status;
    Preferences& preferences;
    std::function<ResolvedLanguage()> language;
    /// Stops playback and keeps the current entry where it is.
    std::function<void()> stopPlayer;
    /// The queue changed: hand the engine another successor.
    std::function<void()> replanSuccessor;
    std::function<void(const QSet<QString>& paths)> forgetLoudness;
    std::function<void()> rebuildImportedAlbums;
};

/// What the maintenance window offers: taking tracks out of the library, everywhere at once, and
/// fetching files from the cloud. No file is ever deleted. Main thread.
class Maintenance : public QObject {
    Q_OBJECT
    Q_PROPERTY(
        int maintenanceActionCount READ maintenanceActionCount NOTIFY maintenanceActionCountChanged)

  public:
    explicit Maintenance(MaintenanceCollaborators with, QObject* parent = nullptr);

    /// How many things need attention.
    int maintenanceActionCount() const;

    /// Very many tracks leave one place after the other: first what is stored, before this returns,
    /// then, worked out by a worker and each in an event of its own, the library, the queue with
    /// the playlists, what is derived, and what was known of the tracks.
    void removeTracks(const QSet<QString>& withPaths);
    /// The same for a list of paths.
    Q_INVOKABLE void removeTracks(const QStringList& withPaths);
    /// Ends a removal that is under way at once. Before tracks are added, so that one of them that
    /// is on its way out comes back rather than going.
    void finishRemoval();
    /// Leaves one copy of each song; a large library is searched by a worker first.
    Q_INVOKABLE void removeDuplicateTracks();
    Q_INVOKABLE void downloadAllCloudTracks();

  Q_SIGNALS:
    void maintenanceActionCountChanged();

  private:
    /// What the worker makes of a removal.
    struct Remainder {
        LibraryStore::Remainder library;
        PlayQueue::Remainder queue;
        std::vector<QSet<QString>> portions; ///< of the paths
    };
    using Step = void (Maintenance::*)(const QSet<QString>& paths);

    void beginRemoval(const QSet<QString>& paths);
    void takeStep();
    void takeNextStep();
    void endRemoval();
    void removeFromLibrary(const QSet<QString>& paths);
    void removeFromQueue(const QSet<QString>& paths);
    void deriveWithout(const QSet<QString>& paths);
    void forget(const QSet<QString>& paths);
    void forgetSome(const QSet<QString>& paths);

    MaintenanceCollaborators m_with;
    std::deque<std::function<void()>> m_steps; ///< of the removal under way
    quint64 m_generation = 0;                  ///< of it
    std::shared_ptr<Remainder> m_remainder;    ///< of it, once it is worked out; else null
    SerialWorker m_worker;
};

} // namespace halvane
