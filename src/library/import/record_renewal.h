// SPDX-License-Identifier: MIT
#pragma once

#include "library/catalog/library_store.h"
#include "library/import/reading_needs.h"
#include "library/playback/play_queue.h"
#include "model/enums.h"
#include "platform/serial_worker.h"

#include <QObject>

namespace halvane {

class CachePersistence;
class CatalogPublisher;
class LanguageSetting;

/// Reads files again whose records were made by older readers, which read less of them, or have a
/// length that is a guess. The records serve until then. It reads when nothing else wants the
/// processor, and saves after each pass, so that the next start goes on where the program was quit.
/// A file that can't be read now keeps its record. Main thread.
class RecordRenewal : public QObject {
    Q_OBJECT

  public:
    /// All references must outlive it.
    RecordRenewal(LibraryStore& store, CatalogPublisher& catalog, PlayQueue& queue,
                  CachePersistence& persistence, const LanguageSetting& language,
                  ReadingNeeds needs, QObject* parent = nullptr);

    /// Renews what is old in the library now. While it runs, it looks once more at the end.
    void renewOldRecords();

  Q_SIGNALS:
    /// Every file with an old record was looked at.
    void finished();

  private:
    void nextPass();
    static TrackRows readAgain(const TrackRows& old, const ReadingNeeds& needs,
                               ResolvedLanguage language, const std::stop_token& stop);
    void takeOver(TrackRows renewed);

    LibraryStore& m_store;
    CatalogPublisher& m_catalog;
    PlayQueue& m_queue;
    CachePersistence& m_persistence;
    const LanguageSetting& m_language;
    const ReadingNeeds m_needs;
    bool m_isRunning = false;
    bool m_isAskedAgain = false; ///< while it was running
    TrackRows m_old;             ///< not yet looked at
    std::size_t m_passLength = 0;
    PlayQueue::Places m_queued; ///< shared by the portions of one pass
    SerialWorker m_worker{SerialWorker::Priority::idle};
};

} // namespace halvane
