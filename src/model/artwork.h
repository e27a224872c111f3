// SPDX-License-Identifier: MIT
#pragma once

#include "model/hash.h"

#include <QByteArray>
#include <QString>

#include <memory>

namespace halvane {

/// Where a picture's bytes come from when somebody needs them.
class ArtworkSource {
  public:
    virtual ~ArtworkSource() = default;
    /// Reads the bytes; empty when they can't be read. Any thread; may block on the disk.
    [[nodiscard]] virtual QByteArray read() const = 0;
    /// Names the picture: two sources with one key give the same bytes.
    [[nodiscard]] virtual QString key() const = 0;
    /// The file that holds this picture and nothing else; empty when there is none.
    [[nodiscard]] virtual QString filePath() const { return {}; }
};

/// A shared handle to a picture. Copying it copies no bytes, and a library of 100,000 tracks holds
/// no picture in memory. Equal when both name the same picture. Any thread.
class Artwork {
  public:
    /// Bytes that are already in memory; the key is their SHA-256.
    static Artwork fromBytes(const QByteArray& bytes);
    /// A file that holds nothing but the picture.
    static Artwork fromFile(const QString& path);
    explicit Artwork(std::shared_ptr<const ArtworkSource> source)
        : m_source(std::move(source)) {}

    [[nodiscard]] QByteArray read() const { return m_source->read(); }
    [[nodiscard]] QString key() const { return m_source->key(); }
    [[nodiscard]] QString filePath() const { return m_source->filePath(); }

    /// Lets those who made the source recognise it. It lives as long as a handle to it.
    [[nodiscard]] const ArtworkSource* source() const { return m_source.get(); }

    friend bool operator==(const Artwork& a, const Artwork& b) {
        return a.m_source == b.m_source || a.key() == b.key();
    }

  private:
    std::shared_ptr<const ArtworkSource> m_source;
};

inline size_t qHash(const Artwork& artwork, size_t seed = 0) {
    return Hasher(seed).add(artwork.key()).result();
}

} // namespace halvane
