// SPDX-License-Identifier: MIT
#pragma once

#include "model/cover_key.h"

#include <QHash>
#include <QMutex>

#include <optional>

namespace halvane {

/// Gives pictures short keys that views can pass on, and reads a picture by its key. It holds a
/// handle of each picture that was asked for, and no bytes. Any thread.
class CoverStore {
  public:
    /// The key of a record's picture, as coverKey gives it. The picture can be read by it from now
    /// on.
    QString keyFor(const std::optional<Artwork>& embedded, const std::optional<FileUrl>& file);
    /// The picture's bytes, empty for an unknown key or an unreadable picture. May block on the
    /// disk.
    [[nodiscard]] QByteArray read(const QString& key) const;

  private:
    mutable QMutex m_mutex;
    QHash<QString, Artwork> m_embedded; ///< by cover key; under m_mutex
};

} // namespace halvane
