// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <atomic>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <type_traits>

namespace halvane {

/// A queue of values between exactly two threads, one that writes and one that reads. Neither ever
/// waits for the other, and nothing is allocated after construction, so the audio thread may be
/// either. Positions count values since construction; the reader may go back a little, so the ring
/// keeps a stretch of what has been taken out.
///
/// Memory order. Each position is stored by one thread only. The writer copies values into the
/// slots and then stores m_written with release; the reader loads it with acquire before it copies
/// them out, so it sees the values whole. The reader copies out and then stores m_consumed with
/// release; the writer loads it with acquire before it reuses the slots, so no value is overwritten
/// while it is being read. The writer goes by the highest position that it has seen there, and the
/// reader never goes back further than the kept stretch behind the highest that it has stored. A
/// thread loads its own position relaxed: nobody else stores it. Each side keeps the other's
/// position as it last saw it, which can only be too low, i.e. on the safe side, and looks again
/// only when that is not enough.
template<typename T>
class SampleRing {
    static_assert(std::is_trivially_copyable_v<T>);

  public:
    /// Room for at least `capacity` values that wait, besides the `kept` taken out last.
    explicit SampleRing(std::size_t capacity, std::size_t kept = 0)
        : m_size(std::bit_ceil(std::max<std::size_t>(capacity + kept, 1)))
        , m_kept(kept)
        , m_values(std::make_unique<T[]>(m_size)) {}

    [[nodiscard]] std::size_t capacity() const { return m_size - m_kept; }

    /// How many values have been written and how many taken out or skipped. Any thread; a value may
    /// be out of date by the time it is used.
    [[nodiscard]] std::uint64_t written() const {
        return m_written.load(std::memory_order_acquire);
    }
    [[nodiscard]] std::uint64_t consumed() const {
        return m_consumed.load(std::memory_order_acquire);
    }

    /// Writer: how many values there is room for.
    [[nodiscard]] std::size_t writeAvailable() {
        m_consumedSeen = std::max(m_consumedSeen, consumed());
        return capacity() - std::size_t(m_written.load(std::memory_order_relaxed) - m_consumedSeen);
    }

    /// Writer: appends values, as many as there is room for, and returns how many.
    std::size_t write(const T* values, std::size_t count) noexcept {
        const auto at = m_written.load(std::memory_order_relaxed);
        auto room = capacity() - std::size_t(at - m_consumedSeen);
        if (room < count)
            room = writeAvailable();
        count = std::min(count, room);
        const auto slot = std::size_t(at) & (m_size - 1);
        const auto first = std::min(count, m_size - slot);
        std::copy_n(values, first, m_values.get() + slot);
        std::copy_n(values + first, count - first, m_values.get());
        m_written.store(at + count, std::memory_order_release);
        return count;
    }

    /// Reader: how many values wait.
    [[nodiscard]] std::size_t readAvailable() const {
        return std::size_t(written() - m_consumed.load(std::memory_order_relaxed));
    }

    /// Reader: takes out up to `count` values and returns how many.
    std::size_t read(T* values, std::size_t count) noexcept {
        const auto at = m_consumed.load(std::memory_order_relaxed);
        if (std::size_t(m_writtenSeen - at) < count)
            m_writtenSeen = written();
        count = std::min(count, std::size_t(m_writtenSeen - at));
        const auto slot = std::size_t(at) & (m_size - 1);
        const auto first = std::min(count, m_size - slot);
        std::copy_n(m_values.get() + slot, first, values);
        std::copy_n(m_values.get(), count - first, values + first);
        m_consumed.store(at + count, std::memory_order_release);
        return count;
    }

    /// Reader: drops everything before a position that has been written already; a position that
    /// has been passed changes nothing.
    void skipTo(std::uint64_t position) noexcept {
        if (position <= m_consumed.load(std::memory_order_relaxed))
            return;
        m_writtenSeen = written();
        m_consumed.store(std::min(position, m_writtenSeen), std::memory_order_release);
    }

    /// Reader: goes back to what it has taken out already, by up to `count` values and as far as
    /// they are kept; by how many.
    std::size_t goBack(std::size_t count) noexcept {
        const auto at = m_consumed.load(std::memory_order_relaxed);
        m_furthest = std::max(m_furthest, at);
        const auto oldest = m_furthest - std::min<std::uint64_t>(m_furthest, m_kept);
        count = std::min(count, std::size_t(at - oldest));
        m_consumed.store(at - count, std::memory_order_release);
        return count;
    }

  private:
    static constexpr std::size_t cacheLine = 64; // keeps the two threads off each other's lines

    const std::size_t m_size;
    const std::size_t m_kept;
    const std::unique_ptr<T[]> m_values;
    // The writer's.
    alignas(cacheLine) std::atomic<std::uint64_t> m_written{0};
    std::uint64_t m_consumedSeen = 0;
    // The reader's.
    alignas(cacheLine) std::atomic<std::uint64_t> m_consumed{0};
    std::uint64_t m_writtenSeen = 0;
    std::uint64_t m_furthest = 0; ///< that has been read, when it last went back
};

} // namespace halvane
