// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>

#include <vector>

namespace halvane {

/// What there is of a file on this disk.
enum class FilePresence {
    here,
    evicted, ///< it lives in the cloud
    gone,
};

/// Files that a sync client shows and has not downloaded.
class CloudFiles {
  public:
    virtual ~CloudFiles() = default;
    /// Whether the file lives in the cloud and not on this disk. Never opens the file: that could
    /// block until it is downloaded. Any thread.
    bool isEvicted(const QString& path) const { return presence(path) == FilePresence::evicted; }
    /// Whether what stands at the path is to be downloaded when it is opened, which would block: a
    /// look that costs less than isEvicted(), which also finds what another name stands for. Any
    /// thread.
    virtual bool blocksWhenOpened(const QString& path) const { return isEvicted(path); }
    /// The same look, which also tells whether there is anything at all. Any thread.
    virtual FilePresence presence(const QString& path) const = 0;
    /// The same of many files, in their order, which may cost less where they share folders. Any
    /// thread.
    virtual std::vector<FilePresence> presences(const QStringList& paths) const {
        std::vector<FilePresence> all;
        for (const QString& path : paths)
            all.push_back(presence(path));
        return all;
    }
    /// Asks for downloads and returns at once; failures are ignored, path by path. Main thread.
    virtual void startDownloading(const QStringList& paths) = 0;
    /// Whether every read of the file goes over a network, so that no background pass should read
    /// it unasked. Any thread.
    virtual bool isRemote(const QString& path) const = 0;
};

} // namespace halvane
