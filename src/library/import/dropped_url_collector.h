// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QUrl>

#include <mutex>

namespace halvane {

/// Gathers the addresses of a drop of several items. They arrive in any order on any thread.
class DroppedURLCollector {
  public:
    void append(const QUrl& url) {
        const std::lock_guard lock(m_mutex);
        m_urls.append(url);
    }
    /// What has arrived so far.
    [[nodiscard]] QList<QUrl> urls() const {
        const std::lock_guard lock(m_mutex);
        return m_urls;
    }

  private:
    mutable std::mutex m_mutex;
    QList<QUrl> m_urls;
};

} // namespace halvane
