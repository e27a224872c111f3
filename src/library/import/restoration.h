// SPDX-License-Identifier: MIT
#pragma once

#include "library/import/reading_needs.h"
#include "library/import/remembered_library.h"
#include "library/playback/play_queue.h"
#include "platform/serial_worker.h"

#include <QObject>

#include <functional>
#include <future>

namespace halvane {

class CachePersistence;
class CatalogPublisher;
class ImportedPaths;
class LanguageSetting;

/// Brings the library back at the start, in two steps. First what the index knows is shown, without
/// a look at any file: a worker decodes it, and the main thread takes over the whole library at a
/// cost that does not grow with it. When its albums are there, the dates of all files are looked
/// at; those that were changed or have no record are read, and take their places in portions.
/// Nothing is played and no status is shown. Main thread.
class Restoration : public QObject {
    Q_OBJECT

  public:
    /// `firstPicture` is waited for as the environment says. All references must outlive it.
    Restoration(LibraryStore& store, CatalogPublisher& catalog, PlayQueue& queue,
                ImportedPaths& importedPaths, CachePersistence& persistence,
                const LanguageSetting& language, ReadingNeeds needs,
                std::shared_future<void> firstPicture, QObject* parent = nullptr);

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
    /// What was read, last first.
    struct Fresh {
        TrackRows changed; ///< to take the places of what the index knew of these files
        TrackRows added;
        PlayQueue::Places queued; ///< for the portions
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
    const ReadingNeeds m_needs;
    const std::shared_future<void> m_firstPicture;
    bool m_isRunning = false;
    SerialWorker m_worker{SerialWorker::Priority::low};
};

} // namespace halvane
