// SPDX-License-Identifier: MIT
#include "platform/folders/folder_watch.h"

#include "platform/log.h"
#include "platform/thread_check.h"

#include <QFile>

#include <array>
#include <cerrno>
#include <cstring>
#include <deque>
#include <dirent.h>
#include <fcntl.h>
#include <sys/inotify.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace halvane {

namespace {

using std::chrono::milliseconds;

// An album that is copied comes as one.
constexpr milliseconds quiet{400};
constexpr milliseconds longest{1500};

constexpr std::uint32_t wanted = IN_CREATE | IN_CLOSE_WRITE | IN_MOVED_TO | IN_MOVED_FROM |
                                 IN_DELETE | IN_DELETE_SELF | IN_MOVE_SELF | IN_ONLYDIR;

bool isHidden(const QByteArray& name) {
    return name.startsWith('.');
}

/// The folders in a folder, and the links to folders.
struct Below {
    std::vector<QByteArray> folders;
    std::vector<QByteArray> links;
};

Below foldersIn(const QByteArray& folder) {
    Below below;
    const int descriptor =
        ::open(folder.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC | O_NONBLOCK);
    const std::unique_ptr<DIR, int (*)(DIR*)> entries(
        descriptor < 0 ? nullptr : ::fdopendir(descriptor), ::closedir);
    if (!entries) {
        if (descriptor >= 0)
            ::close(descriptor);
        return below;
    }
    while (const dirent* entry = ::readdir(entries.get())) {
        const QByteArray name(entry->d_name);
        if (isHidden(name) || !name.isValidUtf8())
            continue;
        struct stat facts;
        bool isLink = entry->d_type == DT_LNK;
        bool isFolder = entry->d_type == DT_DIR;
        if (entry->d_type == DT_UNKNOWN &&
            ::fstatat(descriptor, entry->d_name, &facts, AT_SYMLINK_NOFOLLOW) == 0) {
            isLink = S_ISLNK(facts.st_mode);
            isFolder = S_ISDIR(facts.st_mode);
        }
        if (isLink)
            isFolder =
                ::fstatat(descriptor, entry->d_name, &facts, 0) == 0 && S_ISDIR(facts.st_mode);
        if (isFolder)
            (isLink ? below.links : below.folders).push_back(folder + '/' + name);
    }
    return below;
}

} // namespace

/// The kernel's queue of events. Adding a watch looks the path up on the disk, so that only the
/// worker does it. Any thread.
class FolderWatch::Queue {
  public:
    Queue()
        : descriptor(::inotify_init1(IN_NONBLOCK | IN_CLOEXEC)) {}
    ~Queue() {
        if (descriptor >= 0)
            ::close(descriptor);
    }
    Queue(const Queue&) = delete;
    Queue& operator=(const Queue&) = delete;

    const int descriptor;
};

FolderWatch::FolderWatch(QObject* parent)
    : QObject(parent) {
    m_quiet.setSingleShot(true);
    m_quiet.setInterval(quiet);
    m_limit.setSingleShot(true);
    m_limit.setInterval(longest);
    connect(&m_quiet, &QTimer::timeout, this, &FolderWatch::tell);
    connect(&m_limit, &QTimer::timeout, this, &FolderWatch::tell);
}

void FolderWatch::watch(const QStringList& roots) {
    assertOwnThread(*this);
    m_worker.leaveBehind(); // it may walk a disk that hangs
    m_notifier.reset();
    m_queue.reset();
    m_folders.clear();
    m_early.clear();
    m_roots = roots;
    m_unwatched.clear();
    if (roots.isEmpty())
        return;
    m_queue = std::make_shared<Queue>();
    if (m_queue->descriptor < 0) {
        qCWarning(libraryLog, "folders can't be watched: %s", std::strerror(errno));
        m_unwatched = roots;
        Q_EMIT armed();
        return;
    }
    m_notifier = std::make_unique<QSocketNotifier>(m_queue->descriptor, QSocketNotifier::Read);
    connect(m_notifier.get(), &QSocketNotifier::activated, this, &FolderWatch::read);
    m_worker.run([queue = m_queue,
                  roots](const SerialWorker::Job& job) { return arm(*queue, roots, job.token()); },
                 [this](const Armed& done) {
                     m_unwatched = done.unwatched;
                     add(done);
                     Q_EMIT armed();
                 });
}

/// A folder that several paths lead to has one watch, and is known by the first of them.
FolderWatch::Armed FolderWatch::arm(const Queue& queue, const QStringList& folders,
                                    const std::stop_token& stop) {
    Armed armed;
    QSet<int> known;
    for (const QString& root : folders) {
        std::deque<QByteArray> open{root.toUtf8()};
        std::deque<QByteArray> links;
        bool isRootThere = false;
        bool isWhole = false;
        while (!stop.stop_requested()) {
            if (open.empty())
                open.swap(links);
            if (open.empty()) {
                isWhole = true;
                break;
            }
            const QByteArray folder = std::move(open.front());
            open.pop_front();
            const int id = ::inotify_add_watch(queue.descriptor, folder.constData(), wanted);
            if (id < 0) {
                if (errno == ENOSPC)
                    qCWarning(libraryLog, "there are more folders than one user may watch");
                if (errno == ENOSPC || !isRootThere)
                    break;
                continue; // one of them is gone, or unreadable
            }
            isRootThere = true;
            if (known.contains(id))
                continue;
            known.insert(id);
            armed.folders.push_back({id, QString::fromUtf8(folder)});
            // What comes after this is told of, and what came before is found now.
            Below below = foldersIn(folder);
            open.insert(open.end(), below.folders.begin(), below.folders.end());
            links.insert(links.end(), below.links.begin(), below.links.end());
        }
        if (!isWhole)
            armed.unwatched.append(root);
    }
    return armed;
}

void FolderWatch::armBelow(const QString& folder) {
    m_worker.run([queue = m_queue, folder](
                     const SerialWorker::Job& job) { return arm(*queue, {folder}, job.token()); },
                 [this](const Armed& armed) { add(armed); });
}

void FolderWatch::add(const Armed& armed) {
    for (const Watched& watched : armed.folders)
        m_folders.insert(watched.id, watched.folder);
    for (const Event& event : std::exchange(m_early, {}))
        if (m_folders.contains(event.id))
            take(event);
}

void FolderWatch::read() {
    alignas(inotify_event) std::array<char, 16 * 1024> buffer;
    for (;;) {
        const auto length = ::read(m_queue->descriptor, buffer.data(), buffer.size());
        if (length <= 0)
            return;
        for (const char* at = buffer.data(); at < buffer.data() + length;) {
            const auto* event = reinterpret_cast<const inotify_event*>(at);
            take({event->wd, event->mask, event->len > 0 ? QByteArray(event->name) : QByteArray()});
            at += sizeof(inotify_event) + event->len;
        }
    }
}

void FolderWatch::take(const Event& event) {
    if (event.mask & IN_Q_OVERFLOW) {
        m_isAnyLost = true;
        return tellSoon();
    }
    if (event.mask & IN_IGNORED)
        return;
    const QString folder = m_folders.value(event.id);
    if (folder.isEmpty()) {
        m_early.push_back(event);
        return;
    }
    if (event.mask & (IN_DELETE_SELF | IN_MOVE_SELF | IN_UNMOUNT)) {
        forgetBelow(folder);
        if (m_roots.contains(folder) && !m_unwatched.contains(folder))
            m_unwatched.append(folder);
        m_isAnyGone = true;
        return tellSoon();
    }
    if (isHidden(event.name) || !event.name.isValidUtf8())
        return;
    const QString path = folder + QLatin1Char('/') + QString::fromUtf8(event.name);
    if (event.mask & IN_ISDIR)
        return takeFolder(path, event.mask);
    if (event.mask & (IN_CLOSE_WRITE | IN_MOVED_TO)) {
        m_written.insert(path);
        m_created.remove(path);
    } else if (event.mask & IN_CREATE) {
        m_created.insert(path);
    } else {
        m_written.remove(path);
        m_created.remove(path);
        m_isAnyGone = true;
    }
    tellSoon();
}

void FolderWatch::takeFolder(const QString& folder, quint32 mask) {
    if (mask & (IN_CREATE | IN_MOVED_TO)) {
        armBelow(folder);
        m_came.insert(folder);
    } else {
        forgetBelow(folder);
        m_came.remove(folder);
        m_isAnyGone = true;
    }
    tellSoon();
}

/// Where it has gone, it is watched under its new path, if at all.
void FolderWatch::forgetBelow(const QString& folder) {
    const QString below = folder + QLatin1Char('/');
    m_folders.removeIf([&](auto watched) {
        if (*watched != folder && !watched->startsWith(below))
            return false;
        ::inotify_rm_watch(m_queue->descriptor, watched.key());
        return true;
    });
}

void FolderWatch::tellSoon() {
    m_quiet.start();
    if (!m_limit.isActive())
        m_limit.start();
}

void FolderWatch::tell() {
    m_quiet.stop();
    m_limit.stop();
    const FolderNews news{{m_written.cbegin(), m_written.cend()},
                          {m_created.cbegin(), m_created.cend()},
                          {m_came.cbegin(), m_came.cend()},
                          std::exchange(m_isAnyGone, false),
                          std::exchange(m_isAnyLost, false)};
    m_written.clear();
    m_created.clear();
    m_came.clear();
    Q_EMIT happened(news);
}

} // namespace halvane
