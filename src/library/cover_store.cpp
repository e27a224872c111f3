// SPDX-License-Identifier: MIT
#include "library/cover_store.h"

#include <QFile>

using namespace Qt::StringLiterals;

namespace halvane {

namespace {
constexpr QLatin1StringView embeddedPrefix("artwork:");
constexpr QLatin1StringView filePrefix("file:");
} // namespace

QString CoverStore::keyFor(const std::optional<Artwork>& embedded,
                           const std::optional<FileUrl>& file) {
    if (embedded) {
        const QString key = embedded->key();
        const QMutexLocker lock(&m_mutex);
        if (!m_embedded.contains(key))
            m_embedded.insert(key, *embedded);
        return embeddedPrefix + key;
    }
    return file ? filePrefix + file->path() : QString();
}

QByteArray CoverStore::read(const QString& key) const {
    if (key.startsWith(filePrefix)) {
        QFile file(key.sliced(filePrefix.size()));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    if (!key.startsWith(embeddedPrefix))
        return {};
    std::optional<Artwork> artwork;
    {
        const QMutexLocker lock(&m_mutex);
        const auto found = m_embedded.constFind(key.sliced(embeddedPrefix.size()));
        if (found != m_embedded.cend())
            artwork = *found;
    }
    return artwork ? artwork->read() : QByteArray();
}

} // namespace halvane
