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
    const QSet<QString> paths(withPaths.cbegin(), withPaths.cend());
    m_preferences.removeEntries({SettingsKey::importedAudioPaths, SettingsKey::lovedPaths,
                                 SettingsKey::trackRatings, SettingsKey::playCounts,
                                 SettingsKey::trackLoudness},
                                paths);
    for (const Step step : {&Tidying::removeFromLibrary, &Tidying::removeFromQueue,
                            &Tidying::deriveWithout, &Tidying::forget})
        m_steps.push_back([this, step, paths] { (this->*step)(paths); });
    if (paths.size() <= removedAtOnce)
        finishRemoval();
    else
        beginRemoval(paths);
}

void Tidying::beginRemoval(const QSet<QString>& paths) {
    m_worker.run(
        [paths, library = m_store.beginRemoval(paths), queue = m_queue.beginRemoval(paths)] {
            return std::make_shared<Remainder>(Remainder{library(), queue(), portionsOf(paths)});
        },
        [this, generation = m_generation](const std::shared_ptr<Remainder>& remainder) {
            if (generation != m_generation)
                return;
            m_remainder = remainder;
            takeNextStep();
        });
}

void Tidying::takeStep() {
    const auto step = std::move(m_steps.front());
    m_steps.pop_front();
    step();
}

void Tidying::takeNextStep() {
    takeStep();
    if (m_steps.empty())
        return endRemoval();
    QMetaObject::invokeMethod(
        this,
        [this, generation = m_generation] {
            if (generation == m_generation)
                takeNextStep();
        },
        Qt::QueuedConnection);
}

void Tidying::finishRemoval() {
    while (!m_steps.empty())
        takeStep();
    endRemoval();
}

void Tidying::endRemoval() {
    ++m_generation;
    if (m_remainder) // holds the old rows and entries, which take long to free
        m_worker.start([remainder = std::exchange(m_remainder, nullptr)](const auto&) {});
}

void Tidying::removeFromLibrary(const QSet<QString>& paths) {
    const bool areDuplicatesKnown = m_duplicates.areCurrent();
    if (m_remainder)
        m_store.finishRemoval(paths, m_remainder->library);
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
    if (m_remainder)
        m_queue.finishRemoval(paths, m_remainder->queue);
    else
        m_queue.remove(paths);
    m_playlists.removePaths(paths);
    m_transport.replanSuccessor();
}

void Tidying::deriveWithout(const QSet<QString>& paths) {
    m_catalog.rebuildImportedAlbums();
    m_availability.forget(paths);
}

void Tidying::forget(const QSet<QString>& paths) {
    if (!m_remainder) {
        Q_EMIT removed(paths);
        return;
    }
    for (const QSet<QString>& portion : m_remainder->portions)
        m_steps.push_back([this, portion] { Q_EMIT removed(portion); });
}

void Tidying::removeDuplicateTracks() {
    finishRemoval();
    m_duplicates.find([this](const std::vector<TrackRows>& groups) {
        if (!m_steps.empty()) // a removal under way may take the copy that would be kept
            return removeDuplicateTracks();
        removeTracks(superfluousCopies(groups, [this](const QString& path) {
            return m_availability.state(path) == TrackAvailability::available;
        }));
    });
}

} // namespace halvane
