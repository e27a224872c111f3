// SPDX-License-Identifier: MIT
#pragma once

#include "model/artwork.h"
#include "model/file_url.h"

#include <QHash>
#include <QMutex>

#include <optional>

namespace halvane {

/// Names pictures by short texts that views can hand around, and gives the bytes again. Holds the
/// handles of the pictures that were asked for and no bytes. Any thread.
class CoverStore {
  public:
    /// The key of a record's picture: the embedded one before the file; empty without any.
    QString keyFor(const std::optional<Artwork>& embedded, const std::optional<FileUrl>& file);
    /// The picture's bytes; empty for an unknown key or an unreadable picture. May block on the
    /// disk.
    QByteArray read(const QString& key) const;

  private:
    mutable QMutex m_mutex;
    QHash<QString, Artwork> m_embedded; ///< by the artwork's key; under m_mutex
};

} // namespace halvane
