// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

#include <chrono>
#include <functional>
#include <memory>

namespace halvane::views {

/// Reads files and works on what was read, a few at a time and in any order. A read that a disk
/// holds up lends its place to another after a while, so that the files of other disks go on. A
/// disk that holds up several reads gets no more of them until one returns. Nothing here waits for
/// a read, not even the end of the program.
///
/// Threads live while there is work. All that they share is guarded by one mutex. Any thread.
class CoverWorkers {
  public:
    /// What is left to do when a file has been read. It keeps a processor busy, but does not wait.
    using Rest = std::function<void()>;
    /// Reads a file, which may hang. It must own all that it uses.
    using Read = std::function<Rest()>;

    static constexpr int places = 2;
    static constexpr int mostReads = 12; ///< of one disk, nearly all of them held up

    /// A read that takes longer than `patience` is held up.
    explicit CoverWorkers(std::chrono::milliseconds patience = std::chrono::milliseconds(200));
    /// As close() does.
    ~CoverWorkers();
    CoverWorkers(const CoverWorkers&) = delete;
    CoverWorkers& operator=(const CoverWorkers&) = delete;

    /// Does the work on a thread. It is dropped, which destroys it, after close() or when the disk
    /// holds up too many reads by then.
    void start(const QByteArray& disk, Read read);

    /// Drops what has not begun, and waits until no rest runs. Reads that have begun are left
    /// behind, and nothing follows them.
    void close();

  private:
    struct Crew;
    const std::shared_ptr<Crew> m_crew; ///< shared with the threads, which may outlive this
};

} // namespace halvane::views
