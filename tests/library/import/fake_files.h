// SPDX-License-Identifier: MIT
#pragma once

#include "library/tidying/file_availability.h"

namespace halvane::test {

/// Files that are known to be missing or in the cloud when a test says so.
class FakeFiles final : public FileAvailability {
  public:
    QSet<QString> missing;
    QSet<QString> inCloud;
    QSet<QString> downloading;

    [[nodiscard]] TrackAvailability state(const QString& path) const override {
        return inCloud.contains(path)   ? TrackAvailability::inCloud
               : missing.contains(path) ? TrackAvailability::missing
                                        : TrackAvailability::available;
    }
    void markAvailable(const QString& path) override {
        missing.remove(path);
        inCloud.remove(path);
    }
    void markInCloud(const QString& path) override { inCloud.insert(path); }
    void markMissing(const QString& path) override { missing.insert(path); }
    void startCloudDownloads(const QSet<QString>& paths) override { downloading.unite(paths); }
};

} // namespace halvane::test
