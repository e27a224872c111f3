// SPDX-License-Identifier: MIT
#include "library/import/metadata_healing.h"

#include "library/catalog/catalog_publisher.h"
#include "library/catalog/track_rows.h"
#include "library/import/cache_persistence.h"
#include "library/import/fallback_names.h"
#include "library/playback/play_queue.h"
#include "library/user/language_setting.h"
#include "platform/cloud/cloud_files.h"
#include "platform/thread_check.h"

#include <QFileInfo>

#include <cmath>

namespace halvane {

MetadataHealing::MetadataHealing(LibraryStore& store, CatalogPublisher& catalog, PlayQueue& queue,
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

void MetadataHealing::healIncompleteMetadata() {
    assertOwnThread(*this);
    if (m_isRunning)
        return; // the next refresh asks again
    m_isRunning = true;
    m_worker.run(
        [rows = m_store.snapshot(), attempts = m_attempts, needs = m_needs,
         language = m_language.resolvedLanguage()](const SerialWorker::Job& job) {
            Pass pass;
            std::vector<FileUrl> incomplete;
            for (const TrackPtr& row : *rows) {
                if (row->durationSeconds || !row->sourceURL || attempts.contains(row->path()) ||
                    !QFileInfo::exists(row->path()) ||
                    needs.cloudFiles->blocksWhenOpened(row->path()))
                    continue;
                pass.attempted.insert(row->path());
                incomplete.push_back(*row->sourceURL);
            }
            pass.items = TrackMetadataLoader::loadItems(incomplete, fallbackNames(language),
                                                        needs.accompaniment(job.token()));
            return pass;
        },
        [this](const Pass& pass) {
            m_isRunning = false;
            m_attempts.unite(pass.attempted);
            applyHealedMetadata(pass.items);
            Q_EMIT finished();
        });
}

void MetadataHealing::applyHealedMetadata(const std::vector<LoadedItem>& items) {
    TrackRows healed;
    for (const LoadedItem& loaded : items) {
        const TrackPtr known = m_store.track(loaded.item.path());
        // A second failure tells nothing new.
        if (!known || !loaded.item.durationSeconds)
            continue;
        healed.push_back(rowReadAgain(*known, loaded));
    }
    if (!healed.empty())
        replace(healed);
}

void MetadataHealing::correctLength(const QString& path, double seconds) {
    assertOwnThread(*this);
    // Some records count in what an encoder adds in front and behind, which is a little less than
    // this. Nobody sees so little, and each correction saves the whole index.
    constexpr double tolerance = 0.1;
    const TrackPtr known = m_store.track(path);
    if (!known || !(seconds > 0) ||
        std::abs(known->durationSeconds.value_or(0) - seconds) <= tolerance)
        return;
    Track corrected = *known;
    corrected.durationSeconds = seconds;
    corrected.duration = TrackMetadataLoader::formatDuration(seconds);
    replace({makeRow(std::move(corrected))});
}

void MetadataHealing::replace(const TrackRows& healed) {
    m_store.replace(healed);
    PlayQueue::Places queued;
    m_queue.replace(healed, queued);
    m_catalog.rebuildImportedAlbums();
    m_persistence.persistMetadataCache();
}

} // namespace halvane
