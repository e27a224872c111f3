// SPDX-License-Identifier: MIT
#pragma once

#include "model/artwork.h"
#include "model/file_url.h"

#include <atomic>

namespace halvane {

/// The picture in an audio file's tags, read from the file each time that it is needed. A file that
/// has changed since has another picture. Any thread.
class EmbeddedPicture final : public ArtworkSource {
  public:
    /// `modificationDate` is the audio file's, in seconds since 2001-01-01 UTC.
    EmbeddedPicture(const FileUrl& audioFile, double modificationDate)
        : m_path(audioFile.path())
        , m_modificationDate(modificationDate) {}

    [[nodiscard]] QByteArray read() const override;
    [[nodiscard]] QString key() const override;

    /// Whether the cache already holds these bytes in a file of its own.
    [[nodiscard]] bool isStored() const { return m_isStored; }
    void setStored() const { m_isStored = true; }

  private:
    QString m_path;
    double m_modificationDate;
    mutable std::atomic<bool> m_isStored{false};
};

} // namespace halvane
