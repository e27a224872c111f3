// SPDX-License-Identifier: MIT
#pragma once

#include "platform/sound/sound_output.h"

#include <atomic>
#include <cmath>
#include <cstdint>
#include <vector>

namespace halvane::test {

/// Sound whose every sample tells its frame, counted from 1, so that a recording shows what was
/// left out and what was heard twice. Exact in a float for 190 s at 44.1 kHz.
class NumberedSource final : public RenderSource {
  public:
    NumberedSource(int channels, std::int64_t first = 1)
        : m_channels(channels)
        , m_next(first) {}

    void render(float* interleaved, std::size_t frames) noexcept override {
        for (std::size_t i = 0; i < frames; ++i, ++m_next)
            for (int channel = 0; channel < m_channels; ++channel)
                *interleaved++ = float(double(m_next) / 8'388'608);
        ++renders;
    }

    std::atomic<int> renders = 0;

  private:
    int m_channels;
    std::int64_t m_next;
};

/// Frames heard one after the other.
struct HeardRun {
    std::int64_t silenceBefore; ///< frames
    std::int64_t first;         ///< the number of its first frame
    std::int64_t frames;

    [[nodiscard]] std::int64_t last() const { return first + frames - 1; }
};

/// Takes a recording of numbered sound apart. Where playback fades in, the samples tell a smaller
/// number: such a run begins where its number is in step with what follows.
inline std::vector<HeardRun> heardRuns(const std::vector<float>& recording, int channels) {
    std::vector<HeardRun> runs;
    std::int64_t silence = 0;
    for (std::size_t i = 0; i < recording.size(); i += std::size_t(channels)) {
        const auto frame = std::int64_t(std::llround(double(recording[i]) * 8'388'608));
        if (frame == 0) {
            ++silence;
        } else if (!runs.empty() && silence == 0 && frame == runs.back().last() + 1) {
            ++runs.back().frames;
        } else {
            runs.push_back({silence, frame, 1});
            silence = 0;
        }
    }
    return runs;
}

} // namespace halvane::test
