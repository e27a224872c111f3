// SPDX-License-Identifier: MIT
#pragma once

#include "model/cover_key.h"
#include "model/picture_file.h"

#include <QHash>
#include <QMutex>

#include <optional>

namespace halvane {

/// Gives pictures short keys that views can pass on, and reads a picture by its key. It holds a
/// handle of each picture that was asked for, and no bytes. It remembers what the files were like
/// when they were read, so that a change can be noticed. Any thread.
class CoverStore {
  public:
    /// The key of a record's picture, as coverKey gives it. The picture can be read by it from now
    /// on.
    QString keyFor(const std::optional<Artwork>& embedded, const std::optional<FileUrl>& file);
    /// The picture's bytes, empty for an unknown key or an unreadable picture. May block on the
    /// disk.
    [[nodiscard]] QByteArray read(const QString& key);
    /// The picture was wanted, and its disk does not answer.
    void leaveUnread(const QString& key);

    /// The stamps of what was read, by key: those of cover files, and {} for every picture that
    /// could not be read.
    [[nodiscard]] QHash<QString, FileStamp> stamps() const;

  private:
    mutable QMutex m_mutex;             ///< guards what follows
    QHash<QString, Artwork> m_embedded; ///< by cover key
    QHash<QString, FileStamp> m_stamps; ///< by cover key
};

} // namespace halvane
