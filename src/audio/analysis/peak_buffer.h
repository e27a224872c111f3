// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <array>
#include <atomic>
#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <memory>

namespace halvane {

/// How loud the last seconds of a stream are, stretch by stretch, for somebody who wants to know it
/// of what is heard by now. The audio thread always writes, over the oldest; nobody is ever waited
/// for. One writer, one reader. Each stretch is one number, and the reader asks only for what has
/// been heard, which was written long before: no order between the numbers is needed.
class PeakBuffer {
  public:
    static constexpr std::int64_t stretch = 256; ///< frames

    /// Keeps at least `frames` frames.
    explicit PeakBuffer(std::size_t frames)
        : m_mask(std::bit_ceil(frames / stretch + 2) - 1)
        , m_peaks(std::make_unique<std::atomic<float>[]>(m_mask + 1)) {}

    /// Writer: takes a block that begins at the stream's frame `position`, which may lie before the
    /// end of the last block: that part has been rendered again.
    void push(const float* interleaved, std::size_t frames, std::size_t channels,
              std::int64_t position) noexcept {
        const std::int64_t end = position + std::int64_t(frames);
        while (position < end) {
            const std::int64_t stop = std::min(end, (position / stretch + 1) * stretch);
            const auto samples = std::size_t(stop - position) * channels;
            float peak = loudestOf(interleaved, samples);
            auto& kept = m_peaks[index(position)];
            if (position % stretch != 0)
                peak = std::max(peak, kept.load(std::memory_order_relaxed));
            kept.store(peak, std::memory_order_relaxed);
            interleaved += samples;
            position = stop;
        }
    }

    /// Reader: the largest absolute sample of any channel in the stretches that hold these frames;
    /// 0 where there are none.
    [[nodiscard]] float loudest(std::int64_t begin, std::int64_t end) const noexcept {
        float peak = 0;
        for (std::int64_t at = std::max<std::int64_t>(begin, 0); at < end;
             at = (at / stretch + 1) * stretch)
            peak = std::max(peak, m_peaks[index(at)].load(std::memory_order_relaxed));
        return peak;
    }

  private:
    /// What is no number is no peak. Several maxima side by side need not wait for each other.
    static float loudestOf(const float* samples, std::size_t count) noexcept {
        std::array<float, 16> peaks{};
        const auto take = [samples](float& peak, std::size_t i) {
            const float value = std::abs(samples[i]);
            peak = value > peak ? value : peak;
        };
        std::size_t i = 0;
        for (; i + peaks.size() <= count; i += peaks.size()) {
            for (std::size_t lane = 0; lane < peaks.size(); ++lane)
                take(peaks[lane], i + lane);
        }
        for (; i < count; ++i)
            take(peaks[0], i);
        return *std::max_element(peaks.begin(), peaks.end());
    }
    [[nodiscard]] std::size_t index(std::int64_t frame) const {
        return std::size_t(frame / stretch) & m_mask;
    }

    const std::size_t m_mask;
    const std::unique_ptr<std::atomic<float>[]> m_peaks;
};

} // namespace halvane
