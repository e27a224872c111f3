// SPDX-License-Identifier: MIT
#include "library/import/record_renewal.h"

#include "library/catalog/catalog_publisher.h"
#include "library/catalog/track_rows.h"
#include "library/import/cache_persistence.h"
#include "library/import/fallback_names.h"
#include "library/user/language_setting.h"
#include "platform/thread_check.h"

#include <algorithm>

namespace halvane {

namespace {

// Each pass ends with a new catalog and writes the whole index, so there are few. A short one is
// not worth either.
constexpr std::size_t mostPasses = 8;
constexpr std::size_t shortestPass = 2000;

TrackRows oldRecords(const TrackRows& rows) {
    TrackRows old;
    std::copy_if(rows.cbegin(), rows.cend(), std::back_inserter(old), [](const TrackPtr& row) {
        return row->sourceURL && row->readerVersion < currentReaderVersion;
    });
    return old;
}

// A cover beside the file may have been noticed since the file was read.
TrackPtr withCoverOf(const TrackPtr& present, const TrackPtr& row) {
    if (!present || present->coverURL == row->coverURL)
        return row;
    Track changed = *row;
    changed.coverURL = present->coverURL;
    return makeRow(std::move(changed));
}

} // namespace

RecordRenewal::RecordRenewal(LibraryStore& store, CatalogPublisher& catalog, PlayQueue& queue,
                             CachePersistence& persistence, const LanguageSetting& language,
                             ReadingNeeds needs, QObject* parent)
    : QObject(parent)
    , m_store(store)
    , m_catalog(catalog)
    , m_queue(queue)
    , m_persistence(persistence)
    , m_language(language)
    , m_needs(std::move(needs)) {
}

void RecordRenewal::renewOldRecords() {
    assertOwnThread(*this);
    m_isAskedAgain = m_isRunning;
    if (m_isRunning)
        return;
    m_isRunning = true;
    m_worker.run([rows = m_store.snapshot()] { return oldRecords(*rows); },
                 [this](TrackRows old) {
                     m_old = std::move(old);
                     m_passLength = std::max(shortestPass, m_old.size() / mostPasses + 1);
                     nextPass();
                 });
}

void RecordRenewal::nextPass() {
    if (m_old.empty()) {
        m_isRunning = false;
        Q_EMIT finished();
        if (m_isAskedAgain)
            renewOldRecords();
        return;
    }
    m_worker.run(
        [old = takeLast(m_old, m_passLength), needs = m_needs,
         language = m_language.resolvedLanguage()](const SerialWorker::Job& job) {
            return readAgain(old, needs, language, job.token());
        },
        [this](TrackRows renewed) {
            if (renewed.empty())
                return nextPass();
            m_queued = {};
            takeOver(std::move(renewed));
        });
}

TrackRows RecordRenewal::readAgain(const TrackRows& old, const ReadingNeeds& needs,
                                   ResolvedLanguage language, const std::stop_token& stop) {
    std::vector<FileUrl> files;
    files.reserve(old.size());
    for (const TrackPtr& row : old)
        files.push_back(*row->sourceURL);
    auto with = needs.accompaniment(stop);
    with.isThorough = true;
    auto read = TrackMetadataLoader::loadItems(files, fallbackNames(language), with);
    TrackRows renewed;
    for (std::size_t i = 0; i < read.size(); ++i) {
        const QueueItem& item = read[i].item;
        const bool isRead =
            item.fileSize >= 0 && (item.durationSeconds || !old[i]->durationSeconds);
        if (isRead)
            renewed.push_back(rowReadAgain(*old[i], std::move(read[i])));
    }
    return renewed;
}

void RecordRenewal::takeOver(TrackRows renewed) {
    TrackRows portion = takeLast(renewed, takenOverAtOnce);
    for (TrackPtr& row : portion)
        row = withCoverOf(m_store.track(row->path()), row);
    m_store.replace(portion);
    m_queue.replace(portion, m_queued);
    if (renewed.empty()) {
        m_catalog.rebuildImportedAlbums();
        m_persistence.persistMetadataCache();
        return nextPass();
    }
    // The windows get a turn between the portions.
    QMetaObject::invokeMethod(
        this, [this, renewed = std::move(renewed)]() mutable { takeOver(std::move(renewed)); },
        Qt::QueuedConnection);
}

} // namespace halvane
