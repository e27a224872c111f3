// SPDX-License-Identifier: MIT
#pragma once

#include "platform/cloud/mount_table.h"
#include "presentation/cover_cache.h"
#include "views/library/covers/cover_image_provider.h"

namespace halvane {

class CoverStore;

namespace views {

/// The library's covers, by the keys that the lists carry, with a cache of decoded ones.
class StoredCovers final : public CoverSource {
  public:
    explicit StoredCovers(std::shared_ptr<CoverStore> store);

    bool find(const CoverRequest& request, const QSize& size, QImage& found) override;
    QByteArray diskOf(const QString& key) override;
    QByteArray read(const QString& key) override;
    QImage decode(const CoverRequest& request, const QByteArray& bytes, const QSize& size) override;
    void leftUnread(const QString& key) override;

  private:
    const std::shared_ptr<CoverStore> m_store;
    CoverCache m_cache;
    MountTable m_mounts;
};

} // namespace views
} // namespace halvane
