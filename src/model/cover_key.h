// SPDX-License-Identifier: MIT
#pragma once

#include "model/artwork.h"
#include "model/file_url.h"

#include <QString>

#include <optional>

namespace halvane {

inline constexpr QLatin1StringView embeddedCoverPrefix("artwork:");
inline constexpr QLatin1StringView coverFilePrefix("file:");

/// A short text that names a record's picture, for views to hand around: the embedded one before
/// the file; empty without any. Any thread.
inline QString coverKey(const std::optional<Artwork>& embedded,
                        const std::optional<FileUrl>& file) {
    if (embedded)
        return embeddedCoverPrefix + embedded->key();
    return file ? coverFilePrefix + file->path() : QString();
}

} // namespace halvane
