// SPDX-License-Identifier: MIT
#include "library/tidying/maintenance.h"

#include "library/status_line.h"
#include "library/tidying/availability.h"
#include "library/tidying/cloud_downloads.h"
#include "library/tidying/duplicates.h"
#include "library/user/playlists.h"
#include "library/user/settings_keys.h"
#include "library/user/track_user_data.h"
#include "platform/preferences/preferences.h"
#include "platform/thread_check.h"
#include "presentation/l10n.h"

namespace halvane {

namespace {

/// Up to here all of a removal takes a few milliseconds; what is known of so many is gone within
/// two.
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

Maintenance::Maintenance(MaintenanceCollaborators with, QObject* parent)
    : QObject(parent)
    , m_with(std::move(with)) {
    connect(&m_with.availability, &Availability::cloudPendingPathsChanged, this, [this] {
        m_with.downloads.pendingChanged();
        Q_EMIT maintenanceActionCountChanged();
    });
    connect(&m_with.availability, &Availability::unavailablePathsChanged, this,
            &Maintenance::maintenanceActionCountChanged);
    connect(&m_with.duplicates, &Duplicates::groupsChanged, this,
            &Maintenance::maintenanceActionCountChanged);
}

int Maintenance::maintenanceActionCount() const {
    return static_cast<int>(m_with.availability.unavailablePaths().size() +
                            m_with.availability.cloudPendingPaths().size()) +
           m_with.duplicates.duplicateGroupCount();
}

void Maintenance::removeTracks(const QSet<QString>& withPaths) {
    assertOwnThread(*this);
    if (withPaths.isEmpty())
        return;
    finishRemoval();
    m_with.preferences.removeEntries({SettingsKey::importedAudioPaths, SettingsKey::lovedPaths,
                                      SettingsKey::trackRatings, SettingsKey::playCounts,
                                      SettingsKey::trackLoudness},
                                     withPaths);
    for (const Step step : {&Maintenance::removeFromLibrary, &Maintenance::removeFromQueue,
                            &Maintenance::deriveWithout, &Maintenance::forget})
        m_steps.push_back([this, step, withPaths] { (this->*step)(withPaths); });
    if (withPaths.size() <= removedAtOnce)
        finishRemoval();
    else
        beginRemoval(withPaths);
}

void Maintenance::beginRemoval(const QSet<QString>& paths) {
    m_worker.run(
        [paths, library = m_with.library.beginRemoval(paths),
         queue = m_with.queue.beginRemoval(paths)] {
            return std::make_shared<Remainder>(Remainder{library(), queue(), portionsOf(paths)});
        },
        [this, generation = m_generation](const std::shared_ptr<Remainder>& remainder) {
            if (generation != m_generation)
                return;
            m_remainder = remainder;
            takeNextStep();
        });
}

void Maintenance::takeStep() {
    const auto step = std::move(m_steps.front());
    m_steps.pop_front();
    step();
}

void Maintenance::takeNextStep() {
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

void Maintenance::removeTracks(const QStringList& withPaths) {
    removeTracks(QSet<QString>(withPaths.cbegin(), withPaths.cend()));
}

void Maintenance::finishRemoval() {
    while (!m_steps.empty())
        takeStep();
    endRemoval();
}

void Maintenance::endRemoval() {
    ++m_generation;
    if (m_remainder) // with what there was before, which takes long to free
        m_worker.start([remainder = std::exchange(m_remainder, nullptr)](const auto&) {});
}

void Maintenance::removeFromLibrary(const QSet<QString>& paths) {
    const bool areDuplicatesKnown = m_with.duplicates.areCurrent();
    if (m_remainder)
        m_with.library.finishRemoval(paths, m_remainder->library);
    else
        m_with.library.remove(paths);
    if (areDuplicatesKnown)
        m_with.duplicates.forget(paths);
    else
        m_with.duplicates.refresh();
}

void Maintenance::removeFromQueue(const QSet<QString>& paths) {
    if (paths.contains(m_with.queue.currentPath()))
        m_with.stopPlayer();
    if (m_remainder)
        m_with.queue.finishRemoval(paths, m_remainder->queue);
    else
        m_with.queue.remove(paths);
    m_with.playlists.removePaths(paths);
    m_with.replanSuccessor();
}

void Maintenance::deriveWithout(const QSet<QString>& paths) {
    m_with.rebuildImportedAlbums();
    m_with.availability.forget(paths);
}

void Maintenance::forget(const QSet<QString>& paths) {
    if (!m_remainder)
        return forgetSome(paths);
    for (const QSet<QString>& portion : m_remainder->portions)
        m_steps.push_back([this, portion] { forgetSome(portion); });
}

void Maintenance::forgetSome(const QSet<QString>& paths) {
    m_with.userData.forget(paths);
    m_with.forgetLoudness(paths);
}

void Maintenance::removeDuplicateTracks() {
    finishRemoval();
    m_with.duplicates.find([this](const std::vector<TrackRows>& groups) {
        if (!m_steps.empty()) // it may take what would be kept
            return removeDuplicateTracks();
        removeTracks(superfluousCopies(groups, [this](const QString& path) {
            return m_with.availability.state(path) == TrackAvailability::available;
        }));
    });
}

void Maintenance::downloadAllCloudTracks() {
    const QSet<QString> paths = m_with.availability.cloudPendingPaths();
    if (paths.isEmpty())
        return;
    m_with.downloads.startCloudDownloads(paths);
    m_with.status.show(L10n::cloudDownloadStarted(paths.size(), m_with.language()), false);
}

} // namespace halvane
