// SPDX-License-Identifier: MIT
#pragma once

#include "library/import/reading_needs.h"
#include "library/import/remembered_library.h"
#include "library/playback/play_queue.h"
#include "library/playback/queue_memory.h"
#include "platform/serial_worker.h"

#include <QObject>

#include <functional>
#include <future>

namespace halvane {

class CachePersistence;
class CatalogPublisher;
class ImportedPaths;
class LanguageSetting;

/// Restores the library at the start, in two steps. First, a worker decodes the index, and the main
/// thread takes the whole library over at a cost that does not grow with it; no file is looked at.
/// When the albums are there, the dates of all files are compared. Files that were changed or have
/// no record are read and handed over in portions. Nothing is played and no status is shown. Main
/// thread.
class Restoration : public QObject {
    Q_OBJECT

  public:
    /// `firstPicture` is waited for as the environment says. All references must outlive it.
    Restoration(LibraryStore& store, CatalogPublisher& catalog, PlayQueue& queue,
                ImportedPaths& importedPaths, CachePersistence& persistence,
                const LanguageSetting& language, QueueMemory& memory, ReadingNeeds needs,
                std::shared_future<void> firstPicture, QObject* parent = nullptr);

    void restoreImportedAudio();
    /// Whether the restoration has begun and not finished.
    [[nodiscard]] bool isRunning() const { return m_isRunning; }

  Q_SIGNALS:
    /// The library agrees with its files.
    void finished();

  private:
    using StoredPaths = std::function<std::optional<QStringList>()>;
    struct Remembered {
        RememberedLibrary library;
        TrackRows toCheck; ///< the rows of `library`
        std::vector<PlayQueue::Entry> entries;
        std::optional<LeftQueue> left; ///< what `entries` were made from, unless from all rows
        std::size_t records = 0;       ///< in the index
    };
    /// What was read, in reverse order.
    struct Fresh {
        TrackRows changed; ///< for files that the index knew
        TrackRows added;
        PlayQueue::Places queued; ///< shared by the portions
    };

    void remember(const StoredPaths& stored);
    void publish(Remembered remembered);
    void check(TrackRows known, std::vector<FileUrl> unknown, bool isCacheCurrent);
    static Fresh fresh(const TrackRows& known, std::vector<FileUrl> unknown,
                       const ReadingNeeds& needs, ResolvedLanguage language,
                       const std::stop_token& stop);
    void takeOver(Fresh fresh, bool isCacheCurrent);
    void replaceSome(Fresh& fresh);
    void addSome(TrackRows& fresh);
    void finish(bool isCacheCurrent);

    LibraryStore& m_store;
    CatalogPublisher& m_catalog;
    PlayQueue& m_queue;
    ImportedPaths& m_importedPaths;
    CachePersistence& m_persistence;
    const LanguageSetting& m_language;
    QueueMemory& m_memory;
    const ReadingNeeds m_needs;
    const std::shared_future<void> m_firstPicture;
    bool m_isRunning = false;
    SerialWorker m_worker{SerialWorker::Priority::low};
};

} // namespace halvane
