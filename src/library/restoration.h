// SPDX-License-Identifier: MIT
#pragma once

#include "library/library_store.h"
#include "library/play_queue.h"
#include "metadata/metadata_cache.h"

#include <QObject>
#include <QThreadPool>

#include <functional>
#include <future>

namespace halvane {

class CachePersistence;
class CloudFiles;
class ImportedPaths;
class ReadingJournal;

/// Whom the restoration works with. All of it outlives it; the functions are called on the main
/// thread.
struct RestorationCollaborators {
    LibraryStore& library;
    PlayQueue& queue;
    ImportedPaths& importedPaths;
    CachePersistence& persistence;
    const CloudFiles& cloudFiles;
    MetadataCache cache;
    std::shared_ptr<ReadingJournal> journal;
    std::shared_future<void> firstPicture; ///< as in the environment
    std::function<ResolvedLanguage()> language;
    std::function<void()> rebuildImportedAlbums;
    /// Everything is there: look at availability, duplicates and loudness.
    std::function<void()> restored;
};

/// Brings the library back at the start. Decoding the index, looking at every file's date and
/// making the rows is a worker's work; the main thread takes over the whole library in one step
/// whose cost does not grow with it. Nothing is played and no status is shown. Main thread.
class Restoration : public QObject {
    Q_OBJECT

  public:
    explicit Restoration(RestorationCollaborators with, QObject* parent = nullptr);
    ~Restoration() override;

    void restoreImportedAudio();

  Q_SIGNALS:
    void finished();

  private:
    using StoredPaths = std::function<std::optional<QStringList>()>;
    /// What the worker needs.
    struct Loading {
        MetadataCache cache;
        std::shared_ptr<ReadingJournal> journal;
        const CloudFiles* cloudFiles;
        ResolvedLanguage language;
        std::shared_ptr<std::atomic<bool>> cancelled;
    };
    struct Restored {
        IndexedRows rows;
        std::vector<PlayQueue::Entry> entries;
        bool isCacheCurrent =
            false; ///< the index holds just this, so saving it would change nothing
    };
    void load(const StoredPaths& stored);
    static Restored restored(QStringList paths, const Loading& with);
    void publish(Restored restored);

    RestorationCollaborators m_with;
    std::shared_ptr<std::atomic<bool>> m_cancelled;
    QThreadPool m_worker;
};

} // namespace halvane
