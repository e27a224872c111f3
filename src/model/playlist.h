// SPDX-License-Identifier: MIT
#pragma once

#include "model/fresh_id.h"
#include "model/hash.h"

#include <QString>
#include <QUuid>

#include <vector>

namespace halvane {

/// A named, ordered list of standardized file paths. Plain value, any thread.
struct Playlist {
    QUuid id = freshId();
    QString name;
    std::vector<QString> trackPaths; ///< in play order

    bool operator==(const Playlist&) const = default;
};

inline size_t qHash(const Playlist& v, size_t seed = 0) {
    return Hasher(seed).add(v.id).add(v.name).add(v.trackPaths).result();
}

} // namespace halvane
