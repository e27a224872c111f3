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

/// What is between this machine and the bytes of a file.
enum class Storage {
    disk,
    networkShare, ///< a server in the house or the office: reading loads it and the network
    cloudMount,   ///< reading downloads the file, perhaps every time
};

/// Files that a sync client shows and has not downloaded.
class CloudFiles {
  public:
    virtual ~CloudFiles() = default;
    /// Whether the file lives in the cloud and not on this disk. Never opens the file: that could
    /// block until it is downloaded. Any thread.
    [[nodiscard]] bool isEvicted(const QString& path) const {
        return presence(path) == FilePresence::evicted;
    }
    /// Whether opening the file would block until it is downloaded. Costs less than isEvicted(),
    /// which also finds placeholders of another name. Any thread.
    [[nodiscard]] virtual bool blocksWhenOpened(const QString& path) const {
        return isEvicted(path);
    }
    /// Like isEvicted(), and also tells a file that is here from a missing one. Any thread.
    [[nodiscard]] virtual FilePresence presence(const QString& path) const = 0;
    /// The same for many files, in their order. May cost less where files share folders. Any
    /// thread.
    [[nodiscard]] virtual std::vector<FilePresence> presences(const QStringList& paths) const {
        std::vector<FilePresence> all;
        for (const QString& path : paths)
            all.push_back(presence(path));
        return all;
    }
    /// Asks for downloads and returns at once; failures are ignored, path by path. Main thread.
    virtual void startDownloading(const QStringList& paths) = 0;
    /// Where every read of the file goes, so that no background pass reads over a network unasked.
    /// Does not touch the file. Any thread.
    [[nodiscard]] virtual Storage storage(const QString& path) const = 0;
};

} // namespace halvane
