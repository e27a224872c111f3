// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <atomic>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>

namespace halvane {

/// The last stretch of a stream's first channel, kept for somebody who wants to look at what is
/// heard by now. The audio thread always writes, over the oldest; nobody is ever waited for. One
/// writer, one reader, and a third party that starts streams while neither is at work.
///
/// Memory order. The reader may look at slots while they are overwritten, so it checks afterwards
/// and drops what it got: the writer stores m_writing (how far it will have got) before the slots,
/// which it stores with release; the reader loads the slots with acquire before m_writing. If it
/// saw any new slot, it sees the m_writing that announced it, and the window turns out to be
/// lapped. In the other direction m_written is stored with release after the slots and loaded with
/// acquire before them. The slots are atomic, for both sides touch them at once.
class TapBuffer {
  public:
    /// Keeps at least `frames` frames.
    explicit TapBuffer(std::size_t frames)
        : m_mask(std::bit_ceil(frames) - 1)
        , m_slots(std::make_unique<std::atomic<float>[]>(m_mask + 1)) {}

    [[nodiscard]] std::size_t capacity() const { return m_mask + 1; }

    /// Writer: takes the first channel of a block that begins at the stream's frame `position`,
    /// which may lie before the end of the last block: that part has been rendered again.
    void push(const float* interleaved, std::size_t frames, std::size_t channels,
              std::int64_t position) noexcept {
        const std::int64_t end = position + std::int64_t(frames);
        if (position > m_written.load(std::memory_order_relaxed))
            m_gapEnd.store(position, std::memory_order_relaxed); // what came before is not its past
        m_writing.store(end, std::memory_order_relaxed);
        for (std::size_t i = 0; i < frames; ++i)
            slot(position + std::int64_t(i))
                .store(interleaved[i * channels], std::memory_order_release);
        m_written.store(end, std::memory_order_release);
    }

    /// Reader: the newest frames before `heard`, as many as `out` holds or there are, at the start
    /// of `out`. Empty when nothing has been heard since the last call, or nothing of that is here.
    std::span<float> newest(std::int64_t heard, std::span<float> out) noexcept {
        const std::int64_t end = std::min(heard, m_written.load(std::memory_order_acquire));
        const std::int64_t begin =
            std::max({end - std::int64_t(out.size()), m_discarded.load(std::memory_order_relaxed),
                      m_gapEnd.load(std::memory_order_relaxed)});
        if (begin >= end || end == m_lastEnd)
            return {};
        for (std::int64_t frame = begin; frame < end; ++frame)
            out[std::size_t(frame - begin)] = slot(frame).load(std::memory_order_acquire);
        if (m_writing.load(std::memory_order_relaxed) - begin > std::int64_t(capacity()))
            return {};
        m_lastEnd = end;
        return out.first(std::size_t(end - begin));
    }

    /// Any thread: frames before `position` will not be heard.
    void discardBefore(std::int64_t position) noexcept {
        m_discarded.store(position, std::memory_order_relaxed);
    }

  private:
    std::atomic<float>& slot(std::int64_t frame) { return m_slots[std::size_t(frame) & m_mask]; }

    const std::size_t m_mask;
    const std::unique_ptr<std::atomic<float>[]> m_slots;
    std::atomic<std::int64_t> m_discarded{0};
    // The writer's.
    std::atomic<std::int64_t> m_writing{0};
    std::atomic<std::int64_t> m_written{0};
    std::atomic<std::int64_t> m_gapEnd{0};
    // The reader's.
    std::int64_t m_lastEnd = 0;
};

} // namespace halvane
