// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QThreadPool>

namespace halvane {

class LibraryCatalog;
class LibraryStore;
class TrackUserData;

/// How many tracks of the library are loved: followed one by one, and counted anew when the library
/// is another, by a worker where many are loved. Main thread.
class LovedCount : public QObject {
    Q_OBJECT

  public:
    /// All three must outlive it.
    LovedCount(const LibraryStore& store, const LibraryCatalog& catalog,
               const TrackUserData& userData, QObject* parent = nullptr);

    std::size_t count() const { return m_count; }

  Q_SIGNALS:
    void changed();

  private:
    void recount();
    void follow(const QString& path);
    void set(std::size_t count);

    const LibraryStore& m_store;
    const LibraryCatalog& m_catalog;
    const TrackUserData& m_userData;
    std::size_t m_count = 0;
    bool m_isCounting = false;
    quint64 m_generation = 0; ///< of the newest count
    QThreadPool m_worker;
};

} // namespace halvane
