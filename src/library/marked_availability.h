// SPDX-License-Identifier: MIT
#pragma once

#include "library/file_availability.h"

#include <functional>

namespace halvane {

class CloudFiles;

/// Remembers of each file what playing it came to. Main thread.
class MarkedAvailability final : public FileAvailability {
  public:
    /// The cloud files must outlive it.
    explicit MarkedAvailability(CloudFiles& cloud)
        : m_cloud(cloud) {}

    /// Called with the path whose state changed.
    std::function<void(const QString& path)> onChange;

    TrackAvailability state(const QString& path) const override;
    bool isCloudEvicted(const QString& path) const override;
    bool isReadable(const QString& path) const override;
    void markAvailable(const QString& path) override;
    void markInCloud(const QString& path) override;
    void markUnavailable(const QString& path) override;
    void startCloudDownloads(const QSet<QString>& paths) override;

  private:
    CloudFiles& m_cloud;
    QSet<QString> m_unavailablePaths;
    QSet<QString> m_cloudPendingPaths;
};

} // namespace halvane
