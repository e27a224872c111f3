// SPDX-License-Identifier: MIT
#pragma once

#include "platform/serial_worker.h"

#include <QObject>
#include <QSet>
#include <QStringList>

namespace halvane {

class Preferences;

/// The files and folders that the user gave access to. A bookmark is the UTF-8 path; it resolves
/// while something exists there, and access starts when that is readable. Disks are asked by a
/// worker. Main thread.
class Bookmarks : public QObject {
    Q_OBJECT

  public:
    /// The preferences must outlive it.
    explicit Bookmarks(Preferences& preferences, QObject* parent = nullptr);

    /// Starts access to what is stored, forgets what is gone, and says so in the log.
    void restoreBookmarkAccess();
    /// Stores a bookmark for each root that is not yet accessed.
    void persistBookmarks(const QStringList& forGrantedRoots);

    /// Standardized paths, for as long as the program runs.
    const QSet<QString>& accessedPaths() const { return m_accessed; }

  Q_SIGNALS:
    /// What was restored or persisted is stored now.
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
    SerialWorker m_worker; ///< what is asked first is stored first
};

} // namespace halvane
