// SPDX-License-Identifier: MIT
#pragma once

#include "library/import/remembered_library.h"
#include "library/playback/play_queue.h"
#include "metadata/cache/metadata_cache.h"
#include "platform/serial_worker.h"

#include <QObject>

#include <functional>
#include <future>

namespace halvane {

class CachePersistence;
class CloudFiles;
class ImportedPaths;
class LibraryCatalog;
class ReadingJournal;

/// Whom the restoration works with. All of it outlives it; the functions are called on the main
/// thread.
struct RestorationCollaborators {
    LibraryStore& library;
    LibraryCatalog& catalog;
    PlayQueue& queue;
    ImportedPaths& importedPaths;
    CachePersistence& persistence;
    std::shared_ptr<const CloudFiles> cloudFiles;
    MetadataCache cache;
    std::shared_ptr<ReadingJournal> journal;
    std::shared_future<void> firstPicture; ///< as in the environment
    std::function<ResolvedLanguage()> language;
    /// Everything is there: look at availability, duplicates and loudness.
    std::function<void()> restored;
};

/// Brings the library back at the start, in two steps. First what the index knows is shown, without
/// a look at any file: a worker decodes it, and the main thread takes over the whole library at a
/// cost that does not grow with it. When its albums are there, the dates of all files are looked
/// at; those that were changed or have no record are read, and take their places in portions.
/// Nothing is played and no status is shown. Main thread.
class Restoration : public QObject {
    Q_OBJECT

  public:
    explicit Restoration(RestorationCollaborators with, QObject* parent = nullptr);

    void restoreImportedAudio();
    /// From then until finished().
    bool isRunning() const { return m_isRunning; }

  Q_SIGNALS:
    /// The library is as its files are.
    void finished();

  private:
    using StoredPaths = std::function<std::optional<QStringList>()>;
    struct Remembered {
        RememberedLibrary library;
        TrackRows toCheck; ///< its rows
        std::vector<PlayQueue::Entry> entries;
        std::size_t records = 0; ///< in the index
    };
    /// What the worker needs to read files.
    struct Reading {
        std::shared_ptr<ReadingJournal> journal;
        std::shared_ptr<const CloudFiles> cloudFiles;
        ResolvedLanguage language;
    };
    /// What was read, last first.
    struct Fresh {
        TrackRows changed; ///< to take the places of what the index knew of these files
        TrackRows added;
    };

    void remember(const StoredPaths& stored);
    void publish(Remembered remembered);
    void check(TrackRows known, std::vector<FileUrl> unknown, bool isCacheCurrent);
    static Fresh fresh(const TrackRows& known, std::vector<FileUrl> unknown, const Reading& with,
                       const std::stop_token& stop);
    void takeOver(Fresh fresh, bool isCacheCurrent);
    void finish(bool isCacheCurrent);

    RestorationCollaborators m_with;
    bool m_isRunning = false;
    SerialWorker m_worker{SerialWorker::Priority::low};
};

} // namespace halvane
