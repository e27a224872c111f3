// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QCache>
#include <QImage>
#include <QMutex>
#include <QSize>
#include <QString>

namespace halvane {

/// Decoded covers by picture and size, bounded in bytes; the least recently used go first. What
/// does not decode is remembered too. Any thread.
class CoverCache {
  public:
    static constexpr qsizetype defaultBytes = 64 * 1024 * 1024;

    explicit CoverCache(qsizetype bytes = defaultBytes);

    /// The cover if it is at hand; false when it has to be decoded.
    [[nodiscard]] bool find(const QString& picture, QSize pixels, QImage& found) const;

    /// The cover of these bytes, scaled to cover a size in pixels (its own size where it is
    /// smaller); a null image when it does not decode. Never on the main thread.
    QImage decode(const QString& picture, const QByteArray& bytes, QSize pixels);

    /// Bytes that the covers held take.
    [[nodiscard]] qsizetype bytes() const;

  private:
    struct Key {
        QString picture;
        QSize size;
        bool operator==(const Key&) const = default;
        friend size_t qHash(const Key& key, size_t seed) {
            return qHashMulti(seed, key.picture, key.size.width(), key.size.height());
        }
    };

    mutable QMutex m_mutex; ///< guards the cache; never held while decoding
    mutable QCache<Key, QImage> m_covers;
};

} // namespace halvane
