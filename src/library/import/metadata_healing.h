// SPDX-License-Identifier: MIT
#pragma once

#include "library/catalog/library_store.h"
#include "library/import/reading_needs.h"
#include "platform/serial_worker.h"

#include <QObject>

namespace halvane {

class CachePersistence;
class CatalogPublisher;
class LanguageSetting;
class PlayQueue;

/// Reads files again whose length could not be read, because they may have been half copied or half
/// downloaded. Each is tried at most once while the program runs. A file that is missing or in the
/// cloud does not count as tried. Main thread.
class MetadataHealing : public QObject {
    Q_OBJECT

  public:
    /// All references must outlive it.
    MetadataHealing(LibraryStore& store, CatalogPublisher& catalog, PlayQueue& queue,
                    CachePersistence& persistence, const LanguageSetting& language,
                    ReadingNeeds needs, QObject* parent = nullptr);

    void healIncompleteMetadata();
    /// Puts what was read into the tracks with the same paths. They keep their ids and the user's
    /// data.
    void applyHealedMetadata(const std::vector<LoadedItem>& items);

    [[nodiscard]] const QSet<QString>& metadataHealAttempts() const { return m_attempts; }

  Q_SIGNALS:
    /// A pass has ended.
    void finished();

  private:
    struct Pass {
        QSet<QString> attempted;
        std::vector<LoadedItem> items;
    };

    LibraryStore& m_store;
    CatalogPublisher& m_catalog;
    PlayQueue& m_queue;
    CachePersistence& m_persistence;
    const LanguageSetting& m_language;
    const ReadingNeeds m_needs;
    QSet<QString> m_attempts;
    bool m_isRunning = false;
    SerialWorker m_worker;
};

} // namespace halvane
