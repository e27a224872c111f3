// SPDX-License-Identifier: MIT
#pragma once

#include "library/playback/play_queue.h"
#include "platform/serial_worker.h"

#include <QStringList>

#include <deque>

namespace halvane {

class Availability;
class CatalogPublisher;
class Duplicates;
class Playlists;
class Preferences;
class Transport;

/// Takes tracks out of the library, everywhere at once. No file is ever deleted. Main thread.
class Tidying : public QObject {
    Q_OBJECT
    Q_PROPERTY(
        int maintenanceActionCount READ maintenanceActionCount NOTIFY maintenanceActionCountChanged)

  public:
    /// All references must outlive it.
    Tidying(LibraryStore& store, CatalogPublisher& catalog, PlayQueue& queue, Transport& transport,
            Playlists& playlists, Availability& availability, Duplicates& duplicates,
            Preferences& preferences, QObject* parent = nullptr);

    /// How many things need attention.
    [[nodiscard]] int maintenanceActionCount() const;

    /// The stored preferences change before this returns. Very many tracks then leave the library,
    /// the queue with the playlists, the catalog, and the user's data in an event of its own each,
    /// after a worker has worked out what stays.
    Q_INVOKABLE void removeTracks(const QStringList& withPaths);
    /// Ends a removal that is under way at once. To be called before tracks are added: the removal
    /// would take those of its paths that come back.
    void finishRemoval();
    /// Removes all copies of each song but one. A worker searches a large library first.
    Q_INVOKABLE void removeDuplicateTracks();

  Q_SIGNALS:
    void maintenanceActionCountChanged();
    /// These tracks have left the library and the stored preferences.
    void removed(const QSet<QString>& paths);

  private:
    /// What the worker prepares for a removal.
    struct Remainder {
        LibraryStore::Remainder library;
        PlayQueue::Remainder queue;
        std::vector<QSet<QString>> portions; ///< of the paths
    };
    using Step = void (Tidying::*)(const QSet<QString>& paths);

    void beginRemoval(const QSet<QString>& paths);
    void takeStep();
    void takeNextStep();
    void endRemoval();
    void removeFromLibrary(const QSet<QString>& paths);
    void removeFromQueue(const QSet<QString>& paths);
    void deriveWithout(const QSet<QString>& paths);
    void forget(const QSet<QString>& paths);

    LibraryStore& m_store;
    CatalogPublisher& m_catalog;
    PlayQueue& m_queue;
    Transport& m_transport;
    Playlists& m_playlists;
    Availability& m_availability;
    Duplicates& m_duplicates;
    Preferences& m_preferences;
    // The removal under way.
    std::deque<std::function<void()>> m_steps; ///< still to be done
    quint64 m_generation = 0;
    std::shared_ptr<Remainder> m_remainder; ///< null until the worker has made it
    SerialWorker m_worker;
};

} // namespace halvane
