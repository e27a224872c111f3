// SPDX-License-Identifier: MIT
#pragma once

#include "model/artwork.h"

namespace halvane {

/// Puts embedded pictures into files of their own, for one save. The tracks of an album follow one
/// another and mostly carry the same picture, which is stored once under several names. One thread;
/// failures are ignored.
class ArtworkKeeper {
  public:
    explicit ArtworkKeeper(const QString& cacheDirectory)
        : m_cacheDirectory(cacheDirectory) {}

    void keep(const Artwork& artwork, const QString& trackPath);

  private:
    bool store(const QByteArray& bytes, const QString& file);

    QString m_cacheDirectory;
    QByteArray m_lastBytes;
    QString m_lastFile;
};

} // namespace halvane
