// SPDX-License-Identifier: MIT
#pragma once

#include "platform/serial_worker.h"

#include <QHash>
#include <QObject>
#include <QSet>
#include <QSocketNotifier>
#include <QStringList>
#include <QTimer>

#include <memory>
#include <vector>

struct inotify_event;

namespace halvane {

/// What has happened in folders that are watched. Paths, each once.
struct FolderNews {
    QStringList files;      ///< written, or moved here
    QStringList created;    ///< not written so far: links, and what another program is writing
    QStringList folders;    ///< that came, with all that is in them
    bool isAnyGone = false; ///< files or folders
    bool isAnyLost = false; ///< more has happened than could be told
};

/// Tells what happens in folders and in all below them, as the kernel sees it: not what other
/// machines do to a share. Links to folders are followed. News come together when there were none
/// for a moment, and in time where they don't end. A worker walks the folders. Main thread.
class FolderWatch : public QObject {
    Q_OBJECT

  public:
    explicit FolderWatch(QObject* parent = nullptr);

    /// Watches these folders and no others.
    void watch(const QStringList& roots);
    /// Roots that are not watched, or not as a whole: they are not there, or there are more folders
    /// than one user may watch.
    [[nodiscard]] const QStringList& unwatched() const { return m_unwatched; }

  Q_SIGNALS:
    /// What watch() was asked for is done.
    void armed();
    void happened(const halvane::FolderNews& news);

  private:
    class Queue;
    struct Watched {
        int id;
        QString folder;
    };
    struct Armed {
        std::vector<Watched> folders;
        QStringList unwatched; ///< of those that were to be watched
    };
    struct Event {
        int id;
        quint32 mask;
        QByteArray name;
    };

    static Armed arm(const Queue& queue, const QStringList& folders, const std::stop_token& stop);
    void armBelow(const QString& folder);
    void add(const Armed& armed);
    void read();
    void take(const Event& event);
    void takeFolder(const QString& folder, quint32 mask);
    void forgetBelow(const QString& folder);
    void tellSoon();
    void tell();

    std::shared_ptr<Queue> m_queue; ///< shared with a walk, which may hang
    std::unique_ptr<QSocketNotifier> m_notifier;
    QHash<int, QString> m_folders; ///< by the watch's id
    std::vector<Event> m_early;    ///< of folders that the worker has not told of yet
    QStringList m_roots;
    QStringList m_unwatched;
    QSet<QString> m_written;
    QSet<QString> m_created;
    QSet<QString> m_came; ///< folders
    bool m_isAnyGone = false;
    bool m_isAnyLost = false;
    QTimer m_quiet; ///< since the last news
    QTimer m_limit; ///< since the first
    SerialWorker m_worker{SerialWorker::Priority::low};
};

} // namespace halvane
