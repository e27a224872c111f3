// SPDX-License-Identifier: MIT
#pragma once

#include "library/catalog/library_store.h"
#include "metadata/track_metadata_loader.h"
#include "platform/serial_worker.h"

#include <QObject>

#include <functional>

namespace halvane {

class CachePersistence;
class CloudFiles;
class PlayQueue;

/// Whom the healing works with. All of it outlives it; the functions are called on the main thread.
struct HealingCollaborators {
    LibraryStore& library;
    PlayQueue& queue;
    CachePersistence& persistence;
    std::shared_ptr<const CloudFiles> cloudFiles;
    std::shared_ptr<ReadingJournal> journal;
    std::function<ResolvedLanguage()> language;
    std::function<void()> rebuildImportedAlbums;
};

/// Reads files again whose length could not be read: they may have been half copied, or not yet
/// downloaded. Each at most once while the program runs; one that is missing or in the cloud does
/// not count as tried. Main thread.
class MetadataHealing : public QObject {
    Q_OBJECT

  public:
    explicit MetadataHealing(HealingCollaborators with, QObject* parent = nullptr);

    void healIncompleteMetadata();
    /// Puts what was read into the tracks of the same paths; their ids and what the user made of
    /// them stay.
    void applyHealedMetadata(const std::vector<LoadedItem>& items);

    const QSet<QString>& metadataHealAttempts() const { return m_attempts; }

  Q_SIGNALS:
    /// A pass has ended.
    void finished();

  private:
    struct Pass {
        QSet<QString> attempted;
        std::vector<LoadedItem> items;
    };

    HealingCollaborators m_with;
    QSet<QString> m_attempts;
    bool m_isRunning = false;
    SerialWorker m_worker;
};

} // namespace halvane
