// SPDX-License-Identifier: MIT
#include "metadata/cache/cached_picture.h"

#include "metadata/cache/cached_track_metadata.h"
#include "metadata/readers/file_reader.h"

#include <QFile>

namespace halvane {

QByteArray CachedPicture::read() const {
    QFile file(key());
    if (file.open(QIODevice::ReadOnly))
        return file.readAll();
    return readAudioFile(m_trackPath).metadata.tags.picture();
}

QString CachedPicture::key() const {
    return artworkPath(m_cacheDirectory, m_trackPath);
}

QString CachedPicture::filePath() const {
    const QString path = key();
    return QFile::exists(path) ? path : QString();
}

} // namespace halvane
