// SPDX-License-Identifier: MIT
// Walks folders for playable files.
#include "metadata/track_metadata_loader.h"
#include "platform/log.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdlib>
#include <dirent.h>
#include <fcntl.h>
#include <functional>
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
    static constexpr std::array<QByteArrayView, 21> extensions{
        "mp3", "m4a", "m4b",  "aac", "wav", "aif", "aiff", "aifc", "flac", "alac", "caf",
        "ogg", "oga", "opus", "wv",  "ape", "mpc", "tta",  "dsf",  "dff",  "wma"};
    return contains(extensions, loweredExtension(fileName));
}

// Kinds that are sound or video to the desktop and that nothing here reads. What else lies in a
// folder of music (covers, texts, lists, cue sheets, logs) is not music that was left out.
bool isOtherMusic(QByteArrayView fileName) {
    static constexpr std::array<QByteArrayView, 45> extensions{
        "3ga",  "3gp", "aa",  "aax", "ac3", "ac4",  "amr",  "au",   "avi", "awb", "dts", "dtshd",
        "eac3", "flv", "it",  "kar", "m4p", "m4v",  "mid",  "midi", "mka", "mkv", "mod", "mov",
        "mp1",  "mp2", "mp4", "mpg", "ofr", "ofs",  "ogv",  "ogx",  "ra",  "ram", "rm",  "s3m",
        "shn",  "snd", "spx", "tak", "voc", "weba", "webm", "wmv",  "xm"};
    return contains(extensions, loweredExtension(fileName));
}

// Some desktops show these folders as one document, whose insides are not the user's music. Many a
// band's folder has such a name, too, so that a package is known by what it holds.
bool isPackage(int parent, const QByteArray& folderName) {
    static constexpr std::array<QByteArrayView, 18> extensions{
        "app",    "appdir", "band",   "bundle",       "framework",     "imovielibrary",
        "kext",   "lpdf",   "logicx", "musiclibrary", "photoslibrary", "pkg",
        "plugin", "rtfd",   "vst3",   "sparsebundle", "tvlibrary",     "component"};
    struct stat facts;
    return contains(extensions, loweredExtension(folderName)) &&
           ::fstatat(parent, (folderName + "/Contents").constData(), &facts, 0) == 0 &&
           S_ISDIR(facts.st_mode);
}

// Whether a name can be kept as text. The file could not be found again otherwise.
bool isText(QByteArrayView name) {
    return name.toByteArray().isValidUtf8();
}

using Identity = std::pair<dev_t, ino_t>; // of a file or folder, whatever its path

Identity identityOf(const struct stat& facts) {
    return {facts.st_dev, facts.st_ino};
}

// Searches one root. A link may lead to what has a path of its own, under this root or another. It
// stands for what it alone leads to: the folders of all roots are read before their links, and the
// order is the same each time.
class Walk {
  public:
    using Folders = std::set<Identity>;
    using Files = std::set<Identity>;

    Walk(const QByteArray& root, std::stop_token stop)
        : m_stop(std::move(stop))
        , m_isThroughLink(!isItsOwnPath(root)) {
        struct stat facts;
        if (::stat(root.constData(), &facts) != 0) {
            m_isMissing = errno == ENOENT || errno == ENOTDIR;
            return;
        }
        if (S_ISDIR(facts.st_mode))
            m_folders.insert(root);
        else if (hasPlayableExtension(root))
            (m_isThroughLink ? m_linked : m_files).push_back({root, identityOf(facts)});
        else
            m_leftOut += isOtherMusic(root);
    }

    [[nodiscard]] bool isMissing() const { return m_isMissing; }
    [[nodiscard]] bool isThroughLink() const { return m_isThroughLink; }
    // Reads the folders that no link leads to, but for those that are in `visited`.
    void readFolders(Folders& visited) {
        while (!m_stop.stop_requested() && !m_folders.empty())
            readFolder(m_folders.extract(m_folders.begin()).value(), visited);
    }
    void followLinks(Folders& visited) {
        m_isThroughLink = true;
        while (!m_stop.stop_requested() && !m_links.empty()) {
            m_folders.insert(m_links.extract(m_links.begin()).value());
            readFolders(visited);
        }
    }
    [[nodiscard]] bool hasLinks() const { return !m_beyond.empty() || !m_linked.empty(); }
    // Adds the files that no link stands for.
    void collect(Files& known) const {
        for (const File& file : m_files)
            known.insert(file.identity);
    }
    // Forgets what was found behind links to folders and is known by a path of its own.
    void forgetBeyond(const Files& known) {
        std::erase_if(m_beyond,
                      [&known](const File& file) { return known.contains(file.identity); });
    }
    void collectBeyond(Files& known) const {
        for (const File& file : m_beyond)
            known.insert(file.identity);
    }
    // The paths, sorted, but for links to files that are in `known`.
    [[nodiscard]] std::vector<QByteArray> paths(const Files& known) const {
        std::vector<QByteArray> paths;
        for (const auto& found : {std::cref(m_files), std::cref(m_beyond)})
            for (const File& file : found.get())
                paths.push_back(file.path);
        for (const File& file : m_linked)
            if (!known.contains(file.identity))
                paths.push_back(file.path);
        std::sort(paths.begin(), paths.end());
        return paths;
    }
    [[nodiscard]] std::size_t leftOut() const { return m_leftOut; }

  private:
    struct File {
        QByteArray path;
        Identity identity;
    };

    static bool isItsOwnPath(const QByteArray& root) {
        const std::unique_ptr<char, decltype(&std::free)> real(
            ::realpath(root.constData(), nullptr), &std::free);
        return !real || standardizedPath(QString::fromUtf8(root)).toUtf8() == real.get();
    }

    void readFolder(const QByteArray& folder, Folders& visited) {
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
        if (::fstat(descriptor, &facts) != 0 || !visited.insert(identityOf(facts)).second)
            return;
        while (const dirent* entry = ::readdir(entries.get()))
            take(folder, descriptor, facts.st_dev, *entry);
    }

    void take(const QByteArray& folder, int descriptor, dev_t device, const dirent& entry) {
        const QByteArray name(entry.d_name);
        if (name.startsWith('.'))
            return;
        struct stat facts;
        bool isFolder = entry.d_type == DT_DIR;
        bool isLink = entry.d_type == DT_LNK;
        Identity identity{device, entry.d_ino};
        if (entry.d_type == DT_UNKNOWN)
            isLink = ::fstatat(descriptor, entry.d_name, &facts, AT_SYMLINK_NOFOLLOW) == 0 &&
                     S_ISLNK(facts.st_mode);
        if (isLink || entry.d_type == DT_UNKNOWN) {
            const bool leadsSomewhere = ::fstatat(descriptor, entry.d_name, &facts, 0) == 0;
            isFolder = leadsSomewhere && S_ISDIR(facts.st_mode);
            identity = leadsSomewhere ? identityOf(facts) : Identity();
        }
        const bool isWanted = isFolder ? !isPackage(descriptor, name) : hasPlayableExtension(name);
        if (!isWanted) {
            m_leftOut += !isFolder && isOtherMusic(name);
            return;
        }
        if (!isText(name)) {
            qCWarning(libraryLog, "skipped: the name is not valid UTF-8: %s",
                      QByteArray(folder + '/' + name).toPercentEncoding("/ ").constData());
            return;
        }
        const QByteArray path = (folder.endsWith('/') ? folder : folder + '/') + name;
        if (!isFolder)
            (isLink ? m_linked : m_isThroughLink ? m_beyond : m_files).push_back({path, identity});
        else
            (isLink ? m_links : m_folders).insert(path);
    }

    const std::stop_token m_stop;
    bool m_isThroughLink;           // the root, or the folder that is read now
    bool m_isMissing = false;       // the root
    std::set<QByteArray> m_folders; // still to be read
    std::set<QByteArray> m_links;   // to folders, still to be followed
    std::vector<File> m_files;
    std::vector<File> m_beyond; // in folders behind links
    std::vector<File> m_linked; // links to files
    std::size_t m_leftOut = 0;
};

} // namespace

bool isPlayable(const QString& fileName) {
    return hasPlayableExtension(fileName.toUtf8());
}

AudioFiles findAudioFiles(const std::vector<QString>& roots, const std::stop_token& stop) {
    std::vector<Walk> walks;
    walks.reserve(roots.size());
    for (const QString& root : roots)
        walks.emplace_back(root.toUtf8(), stop);
    Walk::Folders visited;
    for (Walk& walk : walks) {
        if (walk.isThroughLink())
            continue;
        Walk::Folders own; // roots may overlap
        walk.readFolders(own);
        visited.merge(own);
    }
    for (Walk& walk : walks)
        walk.readFolders(visited);
    for (Walk& walk : walks)
        walk.followLinks(visited);

    Walk::Files known;
    if (std::any_of(walks.begin(), walks.end(), std::mem_fn(&Walk::hasLinks))) {
        for (const Walk& walk : walks)
            walk.collect(known);
        for (Walk& walk : walks)
            walk.forgetBeyond(known);
        for (const Walk& walk : walks)
            walk.collectBeyond(known);
    }
    AudioFiles found;
    for (std::size_t i = 0; i < walks.size(); ++i)
        if (walks[i].isMissing())
            found.missing.push_back(roots[i]);
    for (const Walk& walk : walks) {
        for (const QByteArray& file : walk.paths(known))
            found.urls.emplace_back(QString::fromUtf8(file));
        found.leftOut += walk.leftOut();
    }
    return found;
}

std::vector<FileUrl> audioFileURLs(const std::vector<QString>& roots, const std::stop_token& stop) {
    return findAudioFiles(roots, stop).urls;
}

} // namespace halvane::TrackMetadataLoader
