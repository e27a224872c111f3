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

    /// Looks at the disk: the file is in the cloud.
    [[nodiscard]] virtual bool isCloudEvicted(const QString& path) const = 0;
    /// Looks at the disk: the file can be opened for reading.
    [[nodiscard]] virtual bool isReadable(const QString& path) const = 0;

    // Each of these makes a look at the disk that is still running stale.

    /// The file is about to be played: it is neither missing nor in the cloud.
    virtual void markAvailable(const QString& path) = 0;
    /// The file was found to be in the cloud.
    virtual void markInCloud(const QString& path) = 0;
    /// The file could not be opened. It is in the cloud if it is evicted, otherwise missing.
    virtual void markUnavailable(const QString& path) = 0;

    /// Asks for the files and watches until they have come.
    virtual void startCloudDownloads(const QSet<QString>& paths) = 0;
};

} // namespace halvane
