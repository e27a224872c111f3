// SPDX-License-Identifier: MIT
#pragma once

#include "library/playback/play_queue.h"
#include "platform/serial_worker.h"

#include <QStringList>
#include <QTimer>

#include <deque>
#include <future>

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
    /// the queue with the playlists, the user's data, and the catalog in events of their own, after
    /// a worker has worked out what stays.
    Q_INVOKABLE void removeTracks(const QStringList& withPaths);
    /// Takes out at once what another file has become: nothing is noted of it.
    void letGo(const QStringList& paths);
    /// Ends a removal that is under way at once. To be called before tracks are added: the removal
    /// would take those of its paths that come back.
    void finishRemoval();
    /// Removes all copies of each song but one. A worker searches a large library and looks at the
    /// copies' paths first.
    Q_INVOKABLE void removeDuplicateTracks();

  Q_SIGNALS:
    void maintenanceActionCountChanged();
    /// The tracks of these paths are about to leave; everything is still there.
    void removing(const QStringList& paths);
    /// These tracks have left the library and the stored preferences.
    void removed(const QSet<QString>& paths);

  private:
    /// What stays once many tracks have left, as the worker works it out.
    struct Prepared {
        quint64 libraryRevision, queueRevision; ///< of what it was worked out from
        std::shared_ptr<const TrackRows> before;
        IndexedRows library;
        PlayQueue::Remainder queue;
        std::vector<QSet<QString>> portions; ///< of the paths that left
    };

    /// The tracks that are removed.
    using Paths = std::shared_future<QSet<QString>>;

    Paths planRemoval(const QStringList& leaving);
    void prepareRemoval(const Paths& leaving);
    void takeStep();
    void removeFromLibrary(const QSet<QString>& paths);
    void removeFromQueue(const QSet<QString>& paths);
    void forget(const QSet<QString>& paths);
    void deriveWithout(const QSet<QString>& paths);
    void removeCopies(const QHash<QString, QString>& behindLinks);

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
    QTimer m_turn;                             ///< the next step's; runs once the worker is done
    std::shared_ptr<Prepared> m_prepared; ///< null until the worker is done, and for few tracks
    SerialWorker m_worker;
};

} // namespace halvane
