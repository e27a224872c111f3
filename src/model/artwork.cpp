// SPDX-License-Identifier: MIT
#include "model/artwork.h"

#include "model/picture_file.h"

#include <QCryptographicHash>

namespace halvane {

namespace {

class BytesSource final : public ArtworkSource {
  public:
    explicit BytesSource(const QByteArray& bytes)
        : m_bytes(bytes)
        , m_key(QString::fromLatin1(
              QCryptographicHash::hash(bytes, QCryptographicHash::Sha256).toHex())) {}
    [[nodiscard]] QByteArray read() const override { return m_bytes; }
    [[nodiscard]] QString key() const override { return m_key; }

  private:
    QByteArray m_bytes;
    QString m_key;
};

class FileSource final : public ArtworkSource {
  public:
    explicit FileSource(const QString& path)
        : m_path(path) {}
    [[nodiscard]] QByteArray read() const override { return readPictureFile(m_path).bytes; }
    [[nodiscard]] QString key() const override { return m_path; }
    [[nodiscard]] QString filePath() const override { return m_path; }

  private:
    QString m_path;
};

} // namespace

Artwork Artwork::fromBytes(const QByteArray& bytes) {
    return Artwork(std::make_shared<BytesSource>(bytes));
}

Artwork Artwork::fromFile(const QString& path) {
    return Artwork(std::make_shared<FileSource>(path));
}

} // namespace halvane
