// SPDX-License-Identifier: MIT
#include "metadata/cache/artwork_keeper.h"

#include "metadata/cache/atomic_file.h"
#include "metadata/cache/cached_picture.h"
#include "metadata/cache/cached_track_metadata.h"
#include "metadata/readers/embedded_picture.h"

#include <QFile>

namespace halvane {

namespace {

bool holds(const QString& path, const QByteArray& bytes) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) && file.size() == bytes.size() && file.readAll() == bytes;
}

} // namespace

void ArtworkKeeper::keep(const Artwork& artwork, const QString& trackPath) {
    const ArtworkSource* source = artwork.source();
    if (dynamic_cast<const CachedPicture*>(source))
        return; // it came from such a file
    const auto* embedded = dynamic_cast<const EmbeddedPicture*>(source);
    if (embedded && embedded->isStored())
        return;
    const QByteArray bytes = artwork.read();
    if (bytes.isEmpty())
        return;
    const QString file = artworkPath(m_cacheDirectory, trackPath);
    if ((holds(file, bytes) || store(bytes, file)) && embedded)
        embedded->setStored();
    m_lastBytes = bytes;
    m_lastFile = file;
}

bool ArtworkKeeper::store(const QByteArray& bytes, const QString& file) {
    if (bytes == m_lastBytes && linkAtomically(m_lastFile, file))
        return true;
    AtomicFile target(file);
    target.write(bytes);
    return target.commit();
}

} // namespace halvane
