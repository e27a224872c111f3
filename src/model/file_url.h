// SPDX-License-Identifier: MIT
#pragma once

#include "model/hash.h"

#include <QString>

namespace halvane {

/// The standardized form of an absolute path: no "." and ".." steps, no doubled or trailing slash.
/// Links are not resolved and the Unicode form is left alone: the result opens the same file.
QString standardizedPath(const QString& path);

/// A file by its absolute path, with the standardized path under which everything per file is kept
/// (loved, ratings, counts, loudness, availability, playlists, cache). The two share their text
/// when they are equal, as they nearly always are. Plain value, any thread.
class FileUrl {
  public:
    explicit FileUrl(const QString& path);

    [[nodiscard]] const QString& path() const { return m_path; }
    [[nodiscard]] const QString& standardizedPath() const { return m_standardized; }
    /// The last component of the path.
    [[nodiscard]] QString fileName() const;

    bool operator==(const FileUrl&) const = default;

  private:
    QString m_path;
    QString m_standardized;
};

inline size_t qHash(const FileUrl& url, size_t seed = 0) {
    return Hasher(seed).add(url.path()).result();
}

} // namespace halvane
