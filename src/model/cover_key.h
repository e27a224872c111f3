// SPDX-License-Identifier: MIT
#pragma once

#include "model/artwork.h"
#include "model/file_url.h"

#include <QString>

#include <optional>

namespace halvane {

inline constexpr QLatin1StringView embeddedCoverPrefix("artwork:");
inline constexpr QLatin1StringView coverFilePrefix("file:");

/// A short text by which views name a picture. The embedded picture goes before the file. Empty
/// where there is neither. Any thread.
inline QString coverKey(const std::optional<Artwork>& embedded,
                        const std::optional<FileUrl>& file) {
    if (embedded)
        return embeddedCoverPrefix + embedded->key();
    return file ? coverFilePrefix + file->path() : QString();
}

} // namespace halvane
