// SPDX-License-Identifier: MIT
#pragma once

#include "platform/cloud/cloud_files.h"

#include <QFile>
#include <QSet>

#include <functional>
#include <mutex>

namespace halvane::test {

/// A disk from which a test takes files away to the cloud, at any time: workers may be looking.
class FakeCloudFiles final : public CloudFiles {
  public:
    /// These files live in the cloud from now on, and no others. Any thread.
    void setEvicted(const QSet<QString>& paths) {
        const std::scoped_lock lock(m_mutex);
        m_evicted = paths;
    }

    QStringList downloading; ///< what was asked for; main thread
    using BeforeOpening = std::function<void(const QString& path)>;
    /// Called before a file is opened for import, on many threads; it must own what it uses. Any
    /// thread.
    void setBeforeOpening(BeforeOpening call) {
        const std::scoped_lock lock(m_mutex);
        m_beforeOpening = std::move(call);
    }

    [[nodiscard]] bool blocksWhenOpened(const QString& path) const override {
        BeforeOpening call;
        {
            const std::scoped_lock lock(m_mutex);
            call = m_beforeOpening;
        }
        if (call)
            call(path);
        return isEvicted(path);
    }
    [[nodiscard]] FilePresence presence(const QString& path) const override {
        {
            const std::scoped_lock lock(m_mutex);
            if (m_evicted.contains(path))
                return FilePresence::evicted;
        }
        return QFile::exists(path) ? FilePresence::here : FilePresence::gone;
    }
    void startDownloading(const QStringList& paths) override { downloading += paths; }
    [[nodiscard]] Storage storage(const QString&) const override { return Storage::disk; }

  private:
    mutable std::mutex m_mutex;
    QSet<QString> m_evicted; ///< guarded by the mutex, as what follows
    BeforeOpening m_beforeOpening;
};

} // namespace halvane::test
