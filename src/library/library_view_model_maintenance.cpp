// SPDX-License-Identifier: MIT
// Importing music and keeping the library tidy, as the views see them.
#include "library/library_concerns.h"
#include "library/library_view_model.h"

namespace halvane {

void LibraryViewModel::forwardMaintenance() {
    using Self = LibraryViewModel;
    connect(&m_concerns->importer, &Importer::progressChanged, this, &Self::importProgressChanged);
    connect(&m_concerns->maintenance, &Maintenance::maintenanceActionCountChanged, this,
            &Self::maintenanceActionCountChanged);
    connect(&m_concerns->downloads, &CloudDownloads::cloudDownloadInFlightChanged, this,
            &Self::cloudDownloadInFlightChanged);
    connect(&m_concerns->duplicates, &Duplicates::groupsChanged, this,
            &Self::duplicateGroupCountChanged);
}

double LibraryViewModel::importProgress() const {
    return m_concerns->importer.progress();
}
int LibraryViewModel::maintenanceActionCount() const {
    return m_concerns->maintenance.maintenanceActionCount();
}
bool LibraryViewModel::cloudDownloadInFlight() const {
    return m_concerns->downloads.cloudDownloadInFlight();
}
int LibraryViewModel::duplicateGroupCount() const {
    return m_concerns->duplicates.duplicateGroupCount();
}
QAbstractListModel* LibraryViewModel::cloudPendingTracks() {
    return &m_concerns->maintenanceLists.cloudPendingTracks();
}
QAbstractListModel* LibraryViewModel::missingTracks() {
    return &m_concerns->maintenanceLists.missingTracks();
}
QAbstractListModel* LibraryViewModel::duplicateTracks() {
    return &m_concerns->maintenanceLists.duplicateTracks();
}

void LibraryViewModel::chooseAndImportMusic(bool files, bool directories) {
    m_concerns->importer.chooseAndImportMusic(files, directories);
}
void LibraryViewModel::importDroppedURLs(const QList<QUrl>& urls) {
    m_concerns->importer.importDroppedURLs(urls);
}
void LibraryViewModel::refreshAvailability() {
    m_concerns->availability.refreshAvailability();
}
void LibraryViewModel::removeTracks(const QStringList& withPaths) {
    m_concerns->maintenance.removeTracks(QSet<QString>(withPaths.cbegin(), withPaths.cend()));
}
void LibraryViewModel::removeDuplicateTracks() {
    m_concerns->maintenance.removeDuplicateTracks();
}
void LibraryViewModel::downloadAllCloudTracks() {
    m_concerns->maintenance.downloadAllCloudTracks();
}

} // namespace halvane
