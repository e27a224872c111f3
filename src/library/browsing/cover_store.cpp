// SPDX-License-Identifier: MIT
#include "library/browsing/cover_store.h"

#include <QFile>

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

QByteArray CoverStore::read(const QString& key) const {
    if (key.startsWith(coverFilePrefix)) {
        QFile file(key.sliced(coverFilePrefix.size()));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    std::optional<Artwork> artwork;
    {
        const QMutexLocker lock(&m_mutex);
        const auto found = m_embedded.constFind(key);
        if (found != m_embedded.cend())
            artwork = *found;
    }
    return artwork ? artwork->read() : QByteArray();
}

} // namespace halvane
