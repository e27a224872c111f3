// SPDX-License-Identifier: MIT
#include "library/browsing/cover_files.h"

#include "library/browsing/cover_store.h"
#include "library/catalog/catalog_publisher.h"
#include "library/import/cache_persistence.h"
#include "library/playback/play_queue.h"
#include "platform/thread_check.h"

#include <utility>

namespace halvane {

CoverFiles::CoverFiles(LibraryStore& store, CatalogPublisher& catalog, PlayQueue& queue,
                       CachePersistence& persistence, std::shared_ptr<const CoverStore> covers,
                       QObject* parent)
    : QObject(parent)
    , m_store(store)
    , m_catalog(catalog)
    , m_queue(queue)
    , m_persistence(persistence)
    , m_covers(std::move(covers)) {
}

int CoverFiles::revisionOf(const QString& key) const {
    return m_revisions.value(key);
}

void CoverFiles::refresh() {
    assertOwnThread(*this);
    m_isWanted = m_isLooking;
    if (std::exchange(m_isLooking, true))
        return;
    m_worker.run(
        [tracks = m_store.snapshot(), folders = m_folders,
         covers = m_covers](const SerialWorker::Job& job) {
            return surveyOfCovers(*tracks, folders, covers->stamps(), job.token());
        },
        [this](CoverSurvey survey) {
            m_isLooking = false;
            publish(std::move(survey));
            Q_EMIT refreshed();
            if (m_isWanted)
                refresh();
        });
}

void CoverFiles::refreshAlbum(const QString& id) {
    assertOwnThread(*this);
    m_wantedAlbum = id;
    if (!m_isLookingAtAlbum)
        lookAtAlbum();
}

void CoverFiles::lookAtAlbum() {
    const QString id = std::exchange(m_wantedAlbum, {});
    const Catalog& catalog = *m_catalog.published();
    const QHash<QString, FileStamp> all = m_covers->stamps();
    QHash<QString, FileStamp> stamps;
    TrackRows tracks;
    for (const quint32 row : catalog.rowsOfAlbum(id)) {
        tracks.push_back((*catalog.rows)[row]);
        const QString key = coverKey(tracks.back()->coverImageData, tracks.back()->coverURL);
        if (const auto stamp = all.constFind(key); stamp != all.cend())
            stamps.insert(key, *stamp);
    }
    if (tracks.empty())
        return;
    m_isLookingAtAlbum = true;
    m_worker.run(
        [tracks, stamps, folders = m_folders](const SerialWorker::Job& job) {
            return surveyOfCovers(tracks, folders, stamps, job.token());
        },
        [this](CoverSurvey survey) {
            m_isLookingAtAlbum = false;
            publish(std::move(survey));
            if (!m_wantedAlbum.isEmpty())
                lookAtAlbum();
        });
}

void CoverFiles::publish(CoverSurvey survey) {
    m_folders.insert(survey.folders);
    for (const QString& key : std::as_const(survey.changed))
        ++m_revisions[key];
    replaceCovers(survey.covers, survey.changed);
    if (!survey.changed.isEmpty()) {
        ++m_changes;
        Q_EMIT changesChanged();
        Q_EMIT changed(survey.changed);
    }
}

void CoverFiles::replaceCovers(const QHash<QString, std::optional<FileUrl>>& covers,
                               QSet<QString>& keys) {
    TrackRows replaced;
    for (auto cover = covers.cbegin(); cover != covers.cend(); ++cover) {
        const TrackPtr known = m_store.track(cover.key());
        if (!known)
            continue;
        Track track = *known;
        track.coverURL = *cover;
        keys.insert(coverKey(track.coverImageData, track.coverURL));
        replaced.push_back(makeRow(std::move(track)));
    }
    if (replaced.empty())
        return;
    m_store.replace(replaced);
    PlayQueue::Places queued;
    m_queue.replace(replaced, queued);
    m_catalog.rebuildImportedAlbums();
    m_persistence.persistMetadataCache();
}

} // namespace halvane
