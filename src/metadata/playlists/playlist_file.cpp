// SPDX-License-Identifier: MIT
#include "metadata/playlists/playlist_file.h"

#include "metadata/playlists/m3u_reader.h"
#include "metadata/playlists/xspf_reader.h"
#include "metadata/readers/bounded_file.h"
#include "model/file_stamp.h"
#include "model/file_url.h"

#include <QFileInfo>

namespace halvane {

using namespace Qt::StringLiterals;

namespace {

bool isXspf(const QString& path) {
    return path.endsWith(".xspf"_L1, Qt::CaseInsensitive);
}

// A name has to fit a row of the sidebar.
constexpr qsizetype longestName = 200;

} // namespace

bool isPlaylistFile(const QString& path) {
    return isXspf(path) || path.endsWith(".m3u"_L1, Qt::CaseInsensitive) ||
           path.endsWith(".m3u8"_L1, Qt::CaseInsensitive);
}

Result<PlaylistFile> readPlaylist(const QByteArray& contents, const QString& path) {
    const QString file = standardizedPath(path);
    Result<PlaylistFile> read = isXspf(file) ? readXspf(contents, file) : readM3u(contents, file);
    if (!read)
        return read;
    read->name = read->name.simplified().left(longestName).trimmed();
    if (read->name.isEmpty())
        read->name = QFileInfo(file).completeBaseName();
    if (read->name.trimmed().isEmpty())
        read->name = FileUrl(file).fileName();
    return read;
}

Result<PlaylistFile> loadPlaylist(const QString& path) {
    const QByteArray contents = [&path] {
        ReadingLimits limits;
        limits.blockBytes = largestPlaylistFile;
        BoundedFile file(path, limits);
        return file.isOpen() && file.size() <= largestPlaylistFile ? file.read(0, file.size())
                                                                   : QByteArray();
    }();
    if (contents.isEmpty() && fileStamp(path).bytes != 0)
        return Failure{u"it is too large or can't be read"_s};
    if (contents.isEmpty() && fileStamp(path) == FileStamp())
        return Failure{u"it is no regular file"_s};
    return readPlaylist(contents, path);
}

} // namespace halvane
