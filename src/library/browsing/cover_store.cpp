// SPDX-License-Identifier: MIT
#include "library/browsing/cover_store.h"

namespace halvane {

QString CoverStore::keyFor(const std::optional<Artwork>& embedded,
                           const std::optional<FileUrl>& file) {
    const QString key = coverKey(embedded, file);
    if (embedded) {
        const QMutexLocker lock(&m_mutex);
        if (!m_embedded.contains(key))
            m_embedded.insert(key, *embedded);
    }
    return key;
}

QByteArray CoverStore::read(const QString& key) {
    PictureFile picture;
    if (key.startsWith(coverFilePrefix)) {
        picture = readPictureFile(key.sliced(coverFilePrefix.size()));
    } else {
        std::optional<Artwork> artwork;
        {
            const QMutexLocker lock(&m_mutex);
            const auto found = m_embedded.constFind(key);
            if (found != m_embedded.cend())
                artwork = *found;
        }
        if (artwork)
            picture.bytes = artwork->read();
    }
    const QMutexLocker lock(&m_mutex);
    if (key.startsWith(coverFilePrefix) || picture.bytes.isEmpty())
        m_stamps.insert(key, picture.stamp);
    else
        m_stamps.remove(key);
    return picture.bytes;
}

void CoverStore::leaveUnread(const QString& key) {
    const QMutexLocker lock(&m_mutex);
    m_stamps.insert(key, {});
}

QHash<QString, FileStamp> CoverStore::stamps() const {
    const QMutexLocker lock(&m_mutex);
    return m_stamps;
}

} // namespace halvane
