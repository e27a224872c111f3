// SPDX-License-Identifier: MIT
#pragma once

#include "platform/serial_worker.h"

#include <QObject>
#include <QSet>
#include <QStringList>

namespace halvane {

class Preferences;

/// The files and folders to which the user gave access. A bookmark is the UTF-8 path. It resolves
/// while something exists there, and access starts if that is readable. A worker asks the disk.
/// Main thread.
class Bookmarks : public QObject {
    Q_OBJECT

  public:
    /// The preferences must outlive it.
    explicit Bookmarks(Preferences& preferences, QObject* parent = nullptr);

    /// Starts access to what is stored, forgets what no longer exists, and logs the numbers.
    void restoreBookmarkAccess();
    /// Stores a bookmark for each root that is not yet accessed.
    void persistBookmarks(const QStringList& forGrantedRoots);

    /// Standardized paths, for as long as the program runs.
    [[nodiscard]] const QSet<QString>& accessedPaths() const { return m_accessed; }

  Q_SIGNALS:
    /// Restoring or persisting has ended, and its result is stored.
    void stored();

  private:
    struct Answer {
        bool exists = false;
        bool isReadable = false;
    };
    static Answer ask(const QByteArray& path);
    void finishRestoring(const std::vector<QByteArray>& blobs, const std::vector<Answer>& answers);
    void finishPersisting(const QStringList& roots, const std::vector<Answer>& answers);

    Preferences& m_preferences;
    QSet<QString> m_accessed;
    SerialWorker m_worker; ///< serial, so that requests are stored in their order
};

} // namespace halvane
