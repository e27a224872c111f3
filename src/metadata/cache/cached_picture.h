// SPDX-License-Identifier: MIT
#pragma once

#include "model/artwork.h"
#include "model/file_url.h"

namespace halvane {

/// An embedded picture that the cache keeps in a file of its own. It is read from the audio file
/// where that file is missing. Any thread.
class CachedPicture final : public ArtworkSource {
  public:
    CachedPicture(const QString& cacheDirectory, const QString& trackPath)
        : m_cacheDirectory(cacheDirectory)
        , m_trackPath(trackPath) {}

    [[nodiscard]] QByteArray read() const override;
    [[nodiscard]] QString key() const override;
    [[nodiscard]] QString filePath() const override;

  private:
    QString m_cacheDirectory; ///< shares its buffer with the library, as does the other
    QString m_trackPath;
};

} // namespace halvane
