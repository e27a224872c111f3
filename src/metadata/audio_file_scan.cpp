// SPDX-License-Identifier: MIT
// Walks folders for playable files.
#include "metadata/track_metadata_loader.h"
#include "platform/log.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <memory>
#include <set>
#include <span>
#include <sys/stat.h>
#include <unistd.h>

namespace halvane::TrackMetadataLoader {

using namespace Qt::StringLiterals;

namespace {

QByteArray loweredExtension(QByteArrayView fileName) {
    const qsizetype dot = fileName.lastIndexOf('.');
    return dot < 0 ? QByteArray() : fileName.sliced(dot + 1).toByteArray().toLower();
}

bool contains(std::span<const QByteArrayView> names, const QByteArray& name) {
    return std::find(names.begin(), names.end(), name) != names.end();
}

bool hasPlayableExtension(QByteArrayView fileName) {
    static constexpr std::array<QByteArrayView, 11> extensions{
        "mp3", "m4a", "m4b", "aac", "wav", "aif", "aiff", "aifc", "flac", "alac", "caf"};
    return contains(extensions, loweredExtension(fileName));
}

// Some desktops show these folders as one document. Their contents are not the user's music.
bool isPackage(QByteArrayView folderName) {
    static constexpr std::array<QByteArrayView, 18> extensions{
        "app",    "appdir", "band",   "bundle",       "framework",     "imovielibrary",
        "kext",   "lpdf",   "logicx", "musiclibrary", "photoslibrary", "pkg",
        "plugin", "rtfd",   "vst3",   "sparsebundle", "tvlibrary",     "component"};
    return contains(extensions, loweredExtension(folderName));
}

// Whether a name can be kept as text. The file could not be found again otherwise.
bool isText(QByteArrayView name) {
    return name.toByteArray().isValidUtf8();
}

class Walk {
  public:
    explicit Walk(std::stop_token stop)
        : m_stop(std::move(stop)) {}

    void addFolder(const QByteArray& root) {
        m_pending.push_back(root);
        while (!m_pending.empty() && !m_stop.stop_requested()) {
            const QByteArray folder = std::move(m_pending.back());
            m_pending.pop_back();
            readFolder(folder);
        }
        std::sort(m_files.begin(), m_files.end());
    }
    [[nodiscard]] const std::vector<QByteArray>& files() const { return m_files; }

  private:
    void readFolder(const QByteArray& folder) {
        const int descriptor =
            ::open(folder.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC | O_NONBLOCK);
        if (descriptor < 0)
            return;
        const std::unique_ptr<DIR, int (*)(DIR*)> entries(::fdopendir(descriptor), ::closedir);
        if (!entries) {
            ::close(descriptor);
            return;
        }
        // Links may loop, or show one folder in several places.
        struct stat facts;
        if (::fstat(descriptor, &facts) != 0 ||
            !m_visited.insert({facts.st_dev, facts.st_ino}).second)
            return;
        while (const dirent* entry = ::readdir(entries.get()))
            take(folder, descriptor, *entry);
    }

    void take(const QByteArray& folder, int descriptor, const dirent& entry) {
        const QByteArrayView name(entry.d_name);
        if (name.startsWith('.'))
            return;
        bool isFolder = entry.d_type == DT_DIR;
        if (entry.d_type == DT_LNK || entry.d_type == DT_UNKNOWN) {
            struct stat facts;
            isFolder =
                ::fstatat(descriptor, entry.d_name, &facts, 0) == 0 && S_ISDIR(facts.st_mode);
        }
        const bool isWanted = isFolder ? !isPackage(name) : hasPlayableExtension(name);
        if (!isWanted)
            return;
        if (!isText(name)) {
            qCWarning(
                libraryLog, "skipped: the name is not valid UTF-8: %s",
                QByteArray(folder + '/' + name.toByteArray()).toPercentEncoding("/ ").constData());
            return;
        }
        const QByteArray path = (folder.endsWith('/') ? folder : folder + '/') + name.toByteArray();
        (isFolder ? m_pending : m_files).push_back(path);
    }

    const std::stop_token m_stop;
    std::vector<QByteArray> m_pending; // folders still to be read
    std::vector<QByteArray> m_files;
    std::set<std::pair<dev_t, ino_t>> m_visited;
};

} // namespace

bool isPlayable(const QString& fileName) {
    return hasPlayableExtension(fileName.toUtf8());
}

std::vector<FileUrl> audioFileURLs(const std::vector<QString>& roots, const std::stop_token& stop) {
    std::vector<FileUrl> urls;
    for (const QString& root : roots) {
        const QByteArray path = root.toUtf8();
        struct stat facts;
        if (path.isEmpty() || ::stat(path.constData(), &facts) != 0)
            continue;
        if (!S_ISDIR(facts.st_mode)) {
            if (hasPlayableExtension(path))
                urls.emplace_back(root);
            continue;
        }
        Walk walk(stop);
        walk.addFolder(path);
        for (const QByteArray& file : walk.files())
            urls.emplace_back(QString::fromUtf8(file));
    }
    return urls;
}

} // namespace halvane::TrackMetadataLoader
