// SPDX-License-Identifier: MIT
#include "metadata/cache/cached_picture.h"

#include "metadata/cache/cached_track_metadata.h"
#include "metadata/readers/file_reader.h"
#include "model/picture_file.h"

#include <QFile>

namespace halvane {

QByteArray CachedPicture::read() const {
    const QByteArray kept = readPictureFile(key()).bytes;
    return kept.isEmpty() ? readAudioFile(m_trackPath).metadata.tags.picture() : kept;
}

QString CachedPicture::key() const {
    return artworkPath(m_cacheDirectory, m_trackPath);
}

QString CachedPicture::filePath() const {
    const QString path = key();
    return QFile::exists(path) ? path : QString();
}

} // namespace halvane
