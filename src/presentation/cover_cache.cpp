// SPDX-License-Identifier: MIT
#include "presentation/cover_cache.h"

#include "presentation/cover_image.h"

#include <QMutexLocker>

#include <algorithm>

namespace halvane {

namespace {

// An entry takes this beside its pixels. It also bounds the number of pictures that do not decode.
constexpr qsizetype entryBytes = 256;

} // namespace

CoverCache::CoverCache(qsizetype bytes)
    : m_covers(bytes) {
}

bool CoverCache::find(const QString& picture, QSize pixels, QImage& found) const {
    const QMutexLocker locker(&m_mutex);
    const QImage* image = m_covers.object({picture, pixels});
    if (image)
        found = *image;
    return image != nullptr;
}

QImage CoverCache::decode(const QString& picture, const QByteArray& bytes, QSize pixels) {
    QImage image = decodeCover(bytes, pixels);
    const QMutexLocker locker(&m_mutex);
    m_covers.insert({picture, pixels}, new QImage(image), image.sizeInBytes() + entryBytes);
    return image;
}

qsizetype CoverCache::bytes() const {
    const QMutexLocker locker(&m_mutex);
    return m_covers.totalCost();
}

} // namespace halvane
