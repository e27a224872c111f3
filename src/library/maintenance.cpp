// SPDX-License-Identifier: MIT
#include "library/maintenance.h"

#include "library/availability.h"
#include "library/cloud_downloads.h"
#include "library/duplicates.h"
#include "library/play_queue.h"
#include "library/playlists.h"
#include "library/settings_keys.h"
#include "library/status_line.h"
#include "library/thread_check.h"
#include "library/track_user_data.h"
#include "platform/preferences.h"
#include "presentation/l10n.h"

namespace halvane {

namespace {

/// Up to here all of a removal takes a few milliseconds.
constexpr qsizetype removedAtOnce = 500;

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
    m_with.preferences.removeEntries({SettingsKey::importedAudioPaths, SettingsKey::lovedPaths,
                                      SettingsKey::trackRatings, SettingsKey::playCounts,
                                      SettingsKey::trackLoudness},
                                     withPaths);
    for (const auto step : {&Maintenance::removeFromLibrary, &Maintenance::removeFromQueue,
                            &Maintenance::deriveWithout}) {
        if (withPaths.size() <= removedAtOnce)
            (this->*step)(withPaths);
        else
            QMetaObject::invokeMethod(
                this, [this, step, withPaths] { (this->*step)(withPaths); }, Qt::QueuedConnection);
    }
}

void Maintenance::removeFromLibrary(const QSet<QString>& paths) {
    m_with.library.remove(paths);
    m_with.userData.forget(paths);
    m_with.forgetLoudness(paths);
}

void Maintenance::removeFromQueue(const QSet<QString>& paths) {
    if (paths.contains(m_with.queue.currentPath()))
        m_with.stopPlayer();
    m_with.queue.remove(paths);
    m_with.playlists.removePaths(paths);
    m_with.replanSuccessor();
}

void Maintenance::deriveWithout(const QSet<QString>& paths) {
    m_with.rebuildImportedAlbums();
    m_with.availability.forget(paths);
    m_with.duplicates.refresh();
}

void Maintenance::removeDuplicateTracks() {
    m_with.duplicates.find([this](const std::vector<TrackRows>& groups) {
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
