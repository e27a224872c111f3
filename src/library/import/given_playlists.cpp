// SPDX-License-Identifier: MIT
#include "library/import/given_playlists.h"

#include "metadata/parallel/look_at_each.h"
#include "metadata/track_metadata_loader.h"
#include "model/file_stamp.h"
#include "platform/log.h"

#include <QFileInfo>
#include <QSet>

#include <algorithm>
#include <cmath>

namespace halvane {

using namespace Qt::StringLiterals;

namespace {

// Lists give whole seconds, and programs count the padding of a file or do not.
constexpr double sameLength = 2; // seconds

QString folded(const QString& text) {
    return text.normalized(QString::NormalizationForm_C).toCaseFolded();
}

QString nameOf(const QString& path) {
    return path.sliced(path.lastIndexOf(u'/') + 1);
}

// Finds tracks by what their paths and tags look like.
class Resemblance {
  public:
    explicit Resemblance(const KnownTracks& known)
        : m_known(known) {
        for (auto track = known.cbegin(); track != known.cend(); ++track) {
            const QString path = folded(track.key());
            m_byPath.insert(path, track.key());
            m_byLabel.insert({nameOf(path), folded(track->title)}, track.key());
            m_byLabel.insert({nameOf(path), folded(track->artist + u" - "_s + track->title)},
                             track.key());
        }
    }

    // Empty where there is none, or more than one.
    [[nodiscard]] QString find(const PlaylistEntry& entry) const {
        for (const QString& path : entry.paths)
            if (const QStringList same = m_byPath.values(folded(path)); same.size() == 1)
                return same.front();
        // A file's name alone says too little: many albums have a "01.flac".
        if (entry.label.isEmpty())
            return {};
        for (const QString& path : entry.paths) {
            QStringList same = m_byLabel.values({nameOf(folded(path)), folded(entry.label)});
            same.removeIf([&](const QString& other) { return !isAsLong(entry, m_known[other]); });
            if (same.size() == 1)
                return same.front();
        }
        return {};
    }

  private:
    static bool isAsLong(const PlaylistEntry& entry, const KnownTrack& track) {
        return !entry.seconds || !track.seconds ||
               std::abs(*entry.seconds - *track.seconds) <= sameLength;
    }

    const KnownTracks& m_known;
    QMultiHash<QString, QString> m_byPath;
    QMultiHash<std::pair<QString, QString>, QString> m_byLabel; // by the file's name and the label
};

bool isList(const QString& root) {
    if (!isPlaylistFile(root))
        return false;
    const QFileInfo file(root);
    return file.exists() && !file.isDir();
}

// What can be no sound is no entry of a playlist.
void keepPlayable(std::vector<PlaylistEntry>& entries) {
    for (PlaylistEntry& entry : entries)
        std::erase_if(entry.paths,
                      [](const QString& path) { return !TrackMetadataLoader::isPlayable(path); });
}

QSet<QString> filesAmong(QStringList paths, const std::stop_token& stop) {
    paths.removeDuplicates();
    const auto stamps = lookAtEach<FileStamp>(paths, fileStamp, stop);
    QSet<QString> files;
    for (qsizetype i = 0; i < paths.size(); ++i)
        if (const auto& stamp = stamps[static_cast<std::size_t>(i)]; stamp && stamp->inode > 0)
            files.insert(paths[i]);
    return files;
}

GivenPlaylist takeList(PlaylistFile list, const KnownTracks& known, const std::stop_token& stop,
                       QStringList& files) {
    keepPlayable(list.entries);
    QStringList unknown;
    for (const PlaylistEntry& entry : list.entries)
        for (const QString& path : entry.paths)
            if (!known.contains(path))
                unknown.append(path);
    const QSet<QString> fresh = filesAmong(unknown, stop);
    const std::vector<QString> found = foundPaths(
        list.entries, known, [&fresh](const QString& path) { return fresh.contains(path); });
    GivenPlaylist given;
    given.name = std::move(list.name);
    given.entries = std::ssize(list.entries);
    given.addresses = list.addresses;
    QStringList present;
    for (std::size_t i = 0; i < found.size(); ++i) {
        const std::vector<QString>& paths = list.entries[i].paths;
        if (!found[i].isEmpty())
            present.append(found[i]);
        else
            ++given.notFound;
        if (!found[i].isEmpty() || !paths.empty())
            given.paths.append(found[i].isEmpty() ? paths.front() : found[i]);
    }
    // A track of the library may be missing, which its playlist is no place to tell of.
    const QSet<QString> onDisk = filesAmong(present, stop);
    present.removeIf([&onDisk](const QString& path) { return !onDisk.contains(path); });
    files.append(present);
    return given;
}

} // namespace

std::vector<QString> foundPaths(const std::vector<PlaylistEntry>& entries, const KnownTracks& known,
                                const std::function<bool(const QString& path)>& isFile) {
    std::vector<QString> found;
    found.reserve(entries.size());
    std::optional<Resemblance> resemblance; // made for the first entry that has no file
    for (const PlaylistEntry& entry : entries) {
        const auto path =
            std::find_if(entry.paths.cbegin(), entry.paths.cend(), [&](const QString& candidate) {
                return known.contains(candidate) || isFile(candidate);
            });
        if (path != entry.paths.cend()) {
            found.push_back(*path);
            continue;
        }
        if (!resemblance)
            resemblance.emplace(known);
        found.push_back(resemblance->find(entry));
    }
    return found;
}

GivenPlaylists takePlaylists(QStringList& roots, const KnownTracks& known,
                             const std::stop_token& stop) {
    GivenPlaylists given;
    QStringList files;
    for (const QString& root : std::as_const(roots)) {
        if (stop.stop_requested() || !isList(root)) {
            files.append(root);
            continue;
        }
        Result<PlaylistFile> list = loadPlaylist(root);
        if (list) {
            given.lists.push_back(takeList(std::move(*list), known, stop, files));
        } else {
            given.unreadable.append(nameOf(root));
            qCInfo(libraryLog, "a list is left out: %s", qUtf8Printable(list.failure().text));
        }
    }
    roots = files;
    return given;
}

} // namespace halvane
