// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <atomic>

namespace halvane {

/// "8.4 MB": decimal units, one decimal from megabytes on.
QString byteCountText(qint64 bytes);

/// How large a file is, which may be learnt after the record of the file was made: a library comes
/// back from its index without a look at its files. Any thread.
class FileSize {
  public:
    static constexpr qint64 unknown = -1;

    explicit FileSize(qint64 bytes = unknown)
        : m_bytes(bytes) {}
    FileSize(const FileSize& other) noexcept
        : m_bytes(other.bytes()) {}
    FileSize& operator=(const FileSize& other) noexcept {
        m_bytes = other.bytes();
        return *this;
    }
    ~FileSize() = default;

    qint64 bytes() const noexcept { return m_bytes.load(std::memory_order_relaxed); }
    bool isKnown() const { return bytes() >= 0; }
    /// A record that is shared says the same of its file as before, only more.
    void learn(qint64 bytes) const noexcept { m_bytes.store(bytes, std::memory_order_relaxed); }

    bool operator==(const FileSize& other) const { return bytes() == other.bytes(); }

  private:
    mutable std::atomic<qint64> m_bytes;
};

} // namespace halvane
