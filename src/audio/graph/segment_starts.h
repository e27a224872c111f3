// SPDX-License-Identifier: MIT
#pragma once

#include "audio/graph/stream_pipe.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

namespace halvane {

/// The places in the ring where segments begin, those passed lately and those to come, for a reader
/// that may go back. Holds more than are ever scheduled within what can be gone back. Audio thread.
class SegmentStarts {
  public:
    /// Behind the others.
    void add(const SegmentStart& start) noexcept {
        if (m_count == m_all.size()) {
            std::move(m_all.begin() + 1, m_all.end(), m_all.begin());
            --m_count;
            m_passed -= m_passed > 0 ? 1 : 0;
        }
        m_all[m_count++] = start;
    }
    /// Passes the next start before a position of the ring; null where there is none.
    const SegmentStart* passNextBefore(std::uint64_t sample) noexcept {
        const bool isThere = m_passed < m_count && m_all[m_passed].sample < sample;
        return isThere ? &m_all[m_passed++] : nullptr;
    }
    /// The next sample is this one.
    void goBackTo(std::uint64_t sample) noexcept {
        while (m_passed > 0 && m_all[m_passed - 1].sample > sample)
            --m_passed;
    }
    /// The id of the segment whose start was passed last; 0 for none.
    [[nodiscard]] std::uint64_t current() const noexcept {
        return m_passed > 0 ? m_all[m_passed - 1].segment : 0;
    }

  private:
    std::array<SegmentStart, 8> m_all{};
    std::size_t m_count = 0;
    std::size_t m_passed = 0;
};

} // namespace halvane
