// SPDX-License-Identifier: MIT
#pragma once

#include "model/queue_item.h"

#include <QString>

#include <optional>

namespace halvane {

/// A file with an entry's cover, for programs that take pictures by path. It is the file that holds
/// the cover already, or one written to `folder`, where the newest few are kept. None if the entry
/// has no cover or its bytes are no picture. Reads and writes files; any thread but the main one.
std::optional<QString> exportedArtwork(const QueueItem& item, const QString& folder);

} // namespace halvane
