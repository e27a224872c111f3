// SPDX-License-Identifier: MIT
#include "library/import/metadata_healing.h"

#include "library/catalog/track_rows.h"
#include "library/import/cache_persistence.h"
#include "library/playback/play_queue.h"
#include "platform/cloud/cloud_files.h"
#include "platform/thread_check.h"

#include <QFileInfo>

namespace halvane {

MetadataHealing::MetadataHealing(HealingCollaborators with, QObject* parent)
    : QObject(parent)
    , m_with(std::move(with)) {
}

void MetadataHealing::healIncompleteMetadata() {
    assertOwnThread(*this);
    if (m_isRunning)
        return; // every refresh asks again
    m_isRunning = true;
    m_worker.run(
        [rows = m_with.library.snapshot(), attempts = m_attempts, cloudFiles = m_with.cloudFiles,
         journal = m_with.journal, language = m_with.language()](const SerialWorker::Job& job) {
            Pass pass;
            std::vector<FileUrl> incomplete;
            for (const TrackPtr& row : *rows) {
                if (row->durationSeconds || !row->sourceURL || attempts.contains(row->path()) ||
                    !QFileInfo::exists(row->path()) || cloudFiles->blocksWhenOpened(row->path()))
                    continue;
                pass.attempted.insert(row->path());
                incomplete.push_back(*row->sourceURL);
            }
            TrackMetadataLoader::Accompaniment with;
            with.journal = journal;
            with.stop = job.token();
            pass.items = TrackMetadataLoader::loadItems(incomplete, language, with);
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
        const TrackPtr known = m_with.library.track(loaded.item.path());
        // A second failure says no more than the first.
        if (!known || !loaded.item.durationSeconds)
            continue;
        healed.push_back(rowReadAgain(*known, loaded));
    }
    if (healed.empty())
        return;
    m_with.library.replace(healed);
    m_with.queue.replace(healed);
    m_with.rebuildImportedAlbums();
    m_with.persistence.persistMetadataCache();
}

} // namespace halvane
