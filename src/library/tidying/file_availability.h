// SPDX-License-Identifier: MIT
#pragma once

#include "model/enums.h"

#include <QSet>
#include <QString>

namespace halvane {

/// Whether files can be played now, as the queue and the lists ask it. Paths are standardized.
/// Main thread.
class FileAvailability {
  public:
    virtual ~FileAvailability() = default;

    /// What is known of a file. Does not touch the disk. An empty path is available.
    [[nodiscard]] virtual TrackAvailability state(const QString& path) const = 0;

    // Each of these makes a look at the disk that is still running stale.

    /// The file has been opened: it is neither missing nor in the cloud.
    virtual void markAvailable(const QString& path) = 0;
    /// The file was found to be in the cloud.
    virtual void markInCloud(const QString& path) = 0;
    /// The file lies here, or should, and could not be opened or played.
    virtual void markMissing(const QString& path) = 0;

    /// Asks for the files and watches until they have come.
    virtual void startCloudDownloads(const QSet<QString>& paths) = 0;
};

} // namespace halvane
