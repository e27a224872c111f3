// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QThreadPool>

#include <atomic>
#include <memory>

namespace halvane {

class LibraryCatalog;

/// How many bytes the library's files have together, counted by a worker, which looks at those
/// files whose size is not known yet. A disk that does not answer holds up nothing and counts as
/// nothing. Main thread.
class LibrarySize : public QObject {
    Q_OBJECT

  public:
    /// The catalog must outlive it.
    explicit LibrarySize(const LibraryCatalog& catalog, QObject* parent = nullptr);
    ~LibrarySize() override;

    /// Counts what the published catalog holds.
    void measure();
    /// As of the last count.
    qint64 totalBytes() const { return m_totalBytes; }

  Q_SIGNALS:
    void totalBytesChanged();

  private:
    void cancel();

    const LibraryCatalog& m_catalog;
    qint64 m_totalBytes = 0;
    std::shared_ptr<std::atomic<bool>> m_cancelled; ///< of the newest count
    QThreadPool m_worker;
};

} // namespace halvane
