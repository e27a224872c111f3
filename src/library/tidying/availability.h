// SPDX-License-Identifier: MIT
#pragma once

#include "library/catalog/library_store.h"
#include "library/tidying/file_availability.h"
#include "platform/serial_worker.h"

#include <QObject>

#include <memory>

namespace halvane {

class CloudFiles;
class PlayQueue;

/// Which files of the library and the queue can't be played now, and why. A worker looks at the
/// disk, and only its newest look counts. The files of a disk that does not answer stay as they
/// were. Main thread.
class Availability : public QObject, public FileAvailability {
    Q_OBJECT

  public:
    /// The store and the queue must outlive it.
    Availability(const LibraryStore& store, const PlayQueue& queue,
                 std::shared_ptr<const CloudFiles> cloudFiles, QObject* parent = nullptr);

    /// Paths of files that are in the cloud.
    [[nodiscard]] const QSet<QString>& cloudPendingPaths() const { return m_sets.inCloud; }
    /// Paths of missing files.
    [[nodiscard]] const QSet<QString>& unavailablePaths() const { return m_sets.missing; }

    /// The size of the library's missing files, as far as it is known.
    [[nodiscard]] qint64 missingBytes() const { return m_missingBytes; }

    void refreshAvailability();
    /// These files have left the library.
    void forget(const QSet<QString>& paths);

    [[nodiscard]] TrackAvailability state(const QString& path) const override;
    void markAvailable(const QString& path) override;
    void markInCloud(const QString& path) override;
    void markMissing(const QString& path) override;
    void startCloudDownloads(const QSet<QString>& paths) override;

  Q_SIGNALS:
    void cloudPendingPathsChanged();
    void unavailablePathsChanged();
    /// The files whose state is another now. Comes after one or both of the signals above.
    void statesChanged(const QSet<QString>& paths);
    /// The newest look at the disk has ended and is published.
    void refreshed();
    /// These files in the cloud are wanted here.
    void downloadsAsked(const QSet<QString>& paths);

  private:
    struct Sets {
        QSet<QString> inCloud;
        QSet<QString> missing;
    };
    static Sets lookAt(const TrackRows& library, const TrackRows& queue,
                       const std::shared_ptr<const CloudFiles>& cloudFiles, const Sets& before);
    void land(quint64 generation, Sets sets);
    void publish(Sets sets);
    void setState(const QString& path, TrackAvailability state);
    [[nodiscard]] qint64 bytesOf(const QString& path) const;

    const LibraryStore& m_store;
    const PlayQueue& m_queue;
    std::shared_ptr<const CloudFiles> m_cloudFiles;
    Sets m_sets;
    qint64 m_missingBytes = 0;
    quint64 m_generation = 0; ///< of the newest refresh or mark
    SerialWorker m_worker{SerialWorker::Priority::low};
};

} // namespace halvane
