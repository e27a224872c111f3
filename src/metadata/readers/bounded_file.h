// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>

#include <array>
#include <chrono>
#include <cstdint>
#include <vector>

namespace halvane {

/// How much reading one file may cost, whatever its headers claim.
struct ReadingLimits {
    qint64 blockBytes = 64LL << 20;  ///< largest single read
    qint64 totalBytes = 256LL << 20; ///< of all reads together
    int reads = 200'000;
    std::chrono::milliseconds time{
        5000}; ///< processor time, because a slow disk is not the file's fault
};

/// A regular file, opened for reading only, that stops answering when a parser asks for too much of
/// it. Past a limit every read is empty, as at the end of the file, so that loops in parsers end.
/// Opening never blocks on a pipe or a device. One thread.
class BoundedFile {
  public:
    explicit BoundedFile(const QString& path, const ReadingLimits& limits = {});
    ~BoundedFile();
    BoundedFile(const BoundedFile&) = delete;
    BoundedFile& operator=(const BoundedFile&) = delete;

    [[nodiscard]] bool isOpen() const { return m_descriptor >= 0; }
    /// Whether nothing was found at the path.
    [[nodiscard]] bool isMissing() const { return m_missing; }
    [[nodiscard]] qint64 size() const { return m_size; }
    /// Seconds since 2001-01-01 UTC.
    [[nodiscard]] double modificationDate() const { return m_modificationDate; }
    [[nodiscard]] const QByteArray& name() const { return m_name; }

    /// Reads up to `length` bytes at `offset` into `data`. Returns how many were read.
    qint64 read(qint64 offset, qint64 length, char* data);
    QByteArray read(qint64 offset, qint64 length);
    /// How many of `length` bytes may be read at once. Asked by parsers, which allocate before they
    /// read.
    [[nodiscard]] qint64 clampedLength(qint64 offset, qint64 length) const;

    /// Whether a limit was reached.
    [[nodiscard]] bool isExhausted() const { return m_exhausted; }
    /// Whether it was the limit of time.
    [[nodiscard]] bool isLate() const { return m_late; }
    /// Looks at the processor's clock; true when the time is over.
    bool checkTime();

  private:
    /// A part of the file in memory. Parsers read a few bytes at a time, and go back and forth
    /// between the beginning and the end of the file.
    struct Window {
        static constexpr qint64 bytes = 8192;
        static constexpr qint64 step = 4096; ///< windows begin at multiples of it

        qint64 start = 0;
        qint64 length = 0;
        char data[bytes];

        [[nodiscard]] bool holds(qint64 offset, qint64 count) const {
            return offset >= start && offset + count <= start + length;
        }
    };

    [[nodiscard]] const Window* windowOf(qint64 offset, qint64 length) const;
    const Window* fillWindow(qint64 offset);

    QByteArray m_name;
    ReadingLimits m_limits;
    int m_descriptor = -1;
    qint64 m_size = 0;
    double m_modificationDate = 0;
    qint64 m_bytesRead = 0;
    int m_reads = 0;
    bool m_missing = false;
    bool m_exhausted = false;
    bool m_late = false;
    std::chrono::steady_clock::time_point m_deadline;
    std::chrono::nanoseconds m_workDeadline; ///< on the thread's clock
    std::array<Window, 4> m_windows;
    std::size_t m_oldest = 0; ///< the window that is filled next
};

} // namespace halvane
