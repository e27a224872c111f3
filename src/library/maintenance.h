// SPDX-License-Identifier: MIT
#pragma once

#include "library/library_store.h"
#include "model/enums.h"

#include <QObject>

#include <functional>

namespace halvane {

class Availability;
class CloudDownloads;
class Duplicates;
class PlayQueue;
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

  public:
    explicit Maintenance(MaintenanceCollaborators with, QObject* parent = nullptr);

    /// How many things need attention.
    int maintenanceActionCount() const;

    /// Very many tracks leave one place after the other, each in an event of its own: first what is
    /// stored, before this returns, then the library, the queue with the playlists, and what is
    /// derived.
    void removeTracks(const QSet<QString>& withPaths);
    /// Leaves one copy of each song; a large library is searched by a worker first.
    void removeDuplicateTracks();
    void downloadAllCloudTracks();

  Q_SIGNALS:
    void maintenanceActionCountChanged();

  private:
    void removeFromLibrary(const QSet<QString>& paths);
    void removeFromQueue(const QSet<QString>& paths);
    void deriveWithout(const QSet<QString>& paths);

    MaintenanceCollaborators m_with;
};

} // namespace halvane
