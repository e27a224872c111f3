// SPDX-License-Identifier: MIT
#include "views/library/covers/stored_covers.h"

#include "library/browsing/cover_store.h"

#include <utility>

namespace halvane::views {

namespace {

// A picture that has changed is another one to the cache.
QString cacheName(const CoverRequest& request) {
    return QString::number(request.revision) + u'&' + request.key;
}

} // namespace

StoredCovers::StoredCovers(std::shared_ptr<CoverStore> store)
    : m_store(std::move(store)) {
}

bool StoredCovers::find(const CoverRequest& request, const QSize& size, QImage& found) {
    return m_cache.find(cacheName(request), size, found);
}

QByteArray StoredCovers::diskOf(const QString& key) {
    // What stands before the path says only what kind of picture it is.
    const qsizetype path = key.indexOf(u'/');
    return path < 0 ? QByteArray() : m_mounts.pointOf(key.sliced(path));
}

QByteArray StoredCovers::read(const QString& key) {
    return m_store->read(key);
}

QImage StoredCovers::decode(const CoverRequest& request, const QByteArray& bytes,
                            const QSize& size) {
    // What can't be read may be there the next time.
    return bytes.isEmpty() ? QImage() : m_cache.decode(cacheName(request), bytes, size);
}

void StoredCovers::leftUnread(const QString& key) {
    m_store->leaveUnread(key);
}

} // namespace halvane::views
