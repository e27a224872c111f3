// SPDX-License-Identifier: MIT
#pragma once

#include "platform/cloud/cloud_files.h"
#include "platform/cloud/mount_table.h"
#include "platform/serial_worker.h"

namespace halvane {

/// The cloud files of a Linux desktop: hidden dot-name placeholders, and the suffix and attribute
/// placeholders of sync clients, which are asked for downloads over their local sockets.
class DesktopCloudFiles final : public CloudFiles {
  public:
    /// `runtimeFolder` holds the clients' sockets ($XDG_RUNTIME_DIR).
    explicit DesktopCloudFiles(const QString& runtimeFolder);

    [[nodiscard]] FilePresence presence(const QString& path) const override;
    [[nodiscard]] bool blocksWhenOpened(const QString& path) const override;
    [[nodiscard]] std::vector<FilePresence> presences(const QStringList& paths) const override;
    void startDownloading(const QStringList& paths) override;
    [[nodiscard]] Storage storage(const QString& path) const override;

  private:
    [[nodiscard]] MountTable* onDemandMounts() const;

    QString m_runtimeFolder;
    mutable MountTable m_mounts;
    SerialWorker m_requests; ///< one worker, so that requests reach a client in order
};

} // namespace halvane
