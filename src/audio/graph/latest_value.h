// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <atomic>
#include <cstdint>
#include <type_traits>

namespace halvane {

/// Hands values from one thread to one other, which sees the latest and sees it whole; values that
/// come faster than they are taken are skipped. Neither thread waits, nothing is allocated.
///
/// Memory order. There are three slots: the writer owns one, the reader one, and m_shared names the
/// third, with a mark when it holds a value that was not taken yet. Publishing and taking swap the
/// thread's own slot for the shared one in a single exchange, so no slot ever has two owners. The
/// exchange is acquire and release on both sides: the reader that gets a slot sees the value put
/// there before, and the writer that gets one back writes to it only after the reader's last read.
template<typename T>
class LatestValue {
    static_assert(std::is_trivially_copyable_v<T>);

  public:
    /// Writer.
    void publish(const T& value) noexcept {
        m_slots[m_writers] = value;
        m_writers = m_shared.exchange(m_writers | fresh, std::memory_order_acq_rel) & slotMask;
    }

    /// Reader: the latest value if one came since the last call, otherwise null. It stays good
    /// until the next call.
    const T* take() noexcept {
        if (!(m_shared.load(std::memory_order_relaxed) & fresh))
            return nullptr;
        m_readers = m_shared.exchange(m_readers, std::memory_order_acq_rel) & slotMask;
        return &m_slots[m_readers];
    }

  private:
    static constexpr std::uint8_t fresh = 4;
    static constexpr std::uint8_t slotMask = 3;

    std::array<T, 3> m_slots{};
    std::uint8_t m_writers = 0;
    std::atomic<std::uint8_t> m_shared{1};
    std::uint8_t m_readers = 2;
};

} // namespace halvane
