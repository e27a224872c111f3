// SPDX-License-Identifier: MIT
#include "library/tidying/tidying.h"

#include "library/catalog/catalog_publisher.h"
#include "library/playback/transport.h"
#include "library/tidying/availability.h"
#include "library/tidying/duplicates.h"
#include "library/user/playlists.h"
#include "library/user/settings_keys.h"
#include "platform/preferences/preferences.h"
#include "platform/thread_check.h"

namespace halvane {

namespace {

// Removing so many tracks takes a few milliseconds in all, of which the user's data take two.
constexpr qsizetype removedAtOnce = 500;

std::vector<QSet<QString>> portionsOf(const QSet<QString>& paths) {
    std::vector<QSet<QString>> portions;
    for (const QString& path : paths) {
        if (portions.empty() || portions.back().size() == removedAtOnce)
            portions.emplace_back();
        portions.back().insert(path);
    }
    return portions;
}

} // namespace

Tidying::Tidying(LibraryStore& store, CatalogPublisher& catalog, PlayQueue& queue,
                 Transport& transport, Playlists& playlists, Availability& availability,
                 Duplicates& duplicates, Preferences& preferences, QObject* parent)
    : QObject(parent)
    , m_store(store)
    , m_catalog(catalog)
    , m_queue(queue)
    , m_transport(transport)
    , m_playlists(playlists)
    , m_availability(availability)
    , m_duplicates(duplicates)
    , m_preferences(preferences) {
    connect(&availability, &Availability::cloudPendingPathsChanged, this,
            &Tidying::maintenanceActionCountChanged);
    connect(&availability, &Availability::unavailablePathsChanged, this,
            &Tidying::maintenanceActionCountChanged);
    connect(&duplicates, &Duplicates::groupsChanged, this, &Tidying::maintenanceActionCountChanged);
    connect(&m_turn, &QTimer::timeout, this, &Tidying::takeStep);
}

int Tidying::maintenanceActionCount() const {
    return static_cast<int>(m_availability.unavailablePaths().size() +
                            m_availability.cloudPendingPaths().size()) +
           m_duplicates.duplicateGroupCount();
}

void Tidying::removeTracks(const QStringList& withPaths) {
    assertOwnThread(*this);
    if (withPaths.isEmpty())
        return;
    finishRemoval();
    Q_EMIT removing(withPaths);
    const Paths paths = planRemoval(withPaths);
    if (withPaths.size() <= removedAtOnce)
        finishRemoval();
    else
        prepareRemoval(paths);
}

void Tidying::letGo(const QStringList& paths) {
    assertOwnThread(*this);
    finishRemoval();
    planRemoval(paths);
    finishRemoval();
}

/// What is stored changes at once.
Tidying::Paths Tidying::planRemoval(const QStringList& leaving) {
    m_preferences.removeEntries({SettingsKey::importedAudioPaths, SettingsKey::lovedPaths,
                                 SettingsKey::trackRatings, SettingsKey::playCounts,
                                 SettingsKey::lastPlayed, SettingsKey::trackLoudness,
                                 SettingsKey::trackProgrammeLoudness},
                                leaving);
    // Worked out where it is needed first, which for many tracks is the worker.
    const Paths paths = std::async(std::launch::deferred, [leaving] {
        return QSet<QString>(leaving.cbegin(), leaving.cend());
    });
    // The derivation shares the loved paths with its worker, and a change would then copy them all.
    // So it comes last.
    m_steps = {
        [this, paths] { removeFromLibrary(paths.get()); },
        [this, paths] { removeFromQueue(paths.get()); },
        [this, paths] { forget(paths.get()); },
        [this, paths] { deriveWithout(paths.get()); },
    };
    return paths;
}

void Tidying::prepareRemoval(const Paths& leaving) {
    m_worker.run(
        [leaving, rows = m_store.snapshot(), libraryRevision = m_store.revision(),
         entries = m_queue.snapshot(), queueRevision = m_queue.revision()] {
            const QSet<QString>& paths = leaving.get();
            return std::make_shared<Prepared>(
                Prepared{libraryRevision, queueRevision, rows, indexedWithout(*rows, paths),
                         PlayQueue::remainderOf(*entries, paths), portionsOf(paths)});
        },
        [this](std::shared_ptr<Prepared> prepared) {
            m_prepared = std::move(prepared);
            m_turn.start();
        });
}

void Tidying::takeStep() {
    const auto step = std::move(m_steps.front());
    m_steps.pop_front();
    step();
    if (!m_steps.empty())
        return;
    m_turn.stop();
    if (m_prepared) // holds the old rows and entries, which take long to free
        m_worker.start([prepared = std::exchange(m_prepared, nullptr)](const auto&) {});
}

void Tidying::finishRemoval() {
    if (m_steps.empty())
        return;
    m_worker.cancel();
    while (!m_steps.empty())
        takeStep();
}

void Tidying::removeFromLibrary(const QSet<QString>& paths) {
    const bool areDuplicatesKnown = m_duplicates.areCurrent();
    if (m_prepared && m_prepared->libraryRevision == m_store.revision())
        m_store.assign(m_prepared->library);
    else
        m_store.remove(paths);
    if (areDuplicatesKnown)
        m_duplicates.forget(paths);
    else
        m_duplicates.refresh();
}

void Tidying::removeFromQueue(const QSet<QString>& paths) {
    if (paths.contains(m_queue.currentPath()))
        m_transport.stopPlayer(true);
    if (m_prepared && m_prepared->queueRevision == m_queue.revision())
        m_queue.take(m_prepared->queue);
    else
        m_queue.remove(paths);
    m_playlists.removePaths(paths);
    m_transport.replanSuccessor();
}

void Tidying::forget(const QSet<QString>& paths) {
    if (!m_prepared) {
        Q_EMIT removed(paths);
        return;
    }
    for (const QSet<QString>& portion : m_prepared->portions)
        m_steps.push_front([this, portion] { Q_EMIT removed(portion); });
}

void Tidying::deriveWithout(const QSet<QString>& paths) {
    m_catalog.rebuildImportedAlbums();
    m_availability.forget(paths);
}

void Tidying::removeDuplicateTracks() {
    finishRemoval();
    m_duplicates.find([this](const std::vector<TrackRows>& groups) {
        m_worker.run(
            [groups](const SerialWorker::Job& job) {
                return pathsBehindLinks(groups, job.token());
            },
            [this](const QHash<QString, QString>& behindLinks) { removeCopies(behindLinks); });
    });
}

void Tidying::removeCopies(const QHash<QString, QString>& behindLinks) {
    // A removal under way, or a change of the library, may take the copy that would be kept.
    if (!m_steps.empty() || !m_duplicates.areCurrent())
        return removeDuplicateTracks();
    removeTracks(superfluousCopies(m_duplicates.groups(), behindLinks, [this](const QString& path) {
        return m_availability.state(path) == TrackAvailability::available;
    }));
}

} // namespace halvane
