// SPDX-License-Identifier: MIT
#pragma once

#include "library/tidying/file_availability.h"

namespace halvane::test {

/// Files that are missing or in the cloud when a test says so.
class FakeFiles final : public FileAvailability {
  public:
    // What is on the disk.
    QSet<QString> gone;
    QSet<QString> evicted;
    // What is known of it.
    QSet<QString> missing;
    QSet<QString> inCloud;
    QSet<QString> downloading;

    [[nodiscard]] TrackAvailability state(const QString& path) const override {
        return inCloud.contains(path)   ? TrackAvailability::inCloud
               : missing.contains(path) ? TrackAvailability::missing
                                        : TrackAvailability::available;
    }
    [[nodiscard]] bool isCloudEvicted(const QString& path) const override {
        return evicted.contains(path);
    }
    [[nodiscard]] bool isReadable(const QString& path) const override {
        return !gone.contains(path);
    }
    void markAvailable(const QString& path) override {
        missing.remove(path);
        inCloud.remove(path);
    }
    void markInCloud(const QString& path) override { inCloud.insert(path); }
    void markUnavailable(const QString& path) override {
        (isCloudEvicted(path) ? inCloud : missing).insert(path);
    }
    void startCloudDownloads(const QSet<QString>& paths) override { downloading.unite(paths); }
};

} // namespace halvane::test
