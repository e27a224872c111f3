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

/// Puts right what reading a file left incomplete. A file whose length could not be read is read
/// again, because it may have been half copied or half downloaded. Each is tried at most once while
/// the program runs, and one that is missing or in the cloud does not count as tried. A length that
/// playing finds to be another is corrected. Main thread.
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
    /// A file that plays is that long. Only a decoder knows how long some are: of a VBR MP3 without
    /// a header, reading guesses the length from the first frames. A shorter or longer record takes
    /// this length and keeps all else.
    void correctLength(const QString& path, double seconds);

    [[nodiscard]] const QSet<QString>& metadataHealAttempts() const { return m_attempts; }

  Q_SIGNALS:
    /// A pass has ended.
    void finished();

  private:
    struct Pass {
        QSet<QString> attempted;
        std::vector<LoadedItem> items;
    };

    void replace(const TrackRows& healed);

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
