// SPDX-License-Identifier: MIT
#pragma once

#include "audio/graph/equalizer.h"
#include "audio/graph/gain_stage.h"
#include "audio/graph/latest_value.h"
#include "audio/graph/stream_pipe.h"

#include <atomic>
#include <memory>

namespace halvane {

class DecoderThread;
class SpectrumTap;

/// What the sound server pulls from: the ring, through the equalizer and the gain, past the tap.
/// Where the ring is empty the stream is silent, and the pipe is told where. With the equalizer
/// flat and the gain 1 the samples are those of the file.
class RenderGraph final : public RenderSource {
  public:
    /// Main thread. Both must outlive the graph; the tap may be missing.
    RenderGraph(DecoderThread& decoder, SpectrumTap* tap);

    /// The next stream plays from this pipe. Main thread, while there is no stream.
    void beginStream(std::shared_ptr<StreamPipe> pipe);
    /// A curve that was made for the stream's rate. Main thread.
    void setEqualizer(const EqualizerCurve& curve) { m_curves.publish(curve); }
    /// Track gain times volume, linear. Main thread.
    void setGain(float gain) { m_gain.store(gain, std::memory_order_relaxed); }

    void render(float* interleaved, std::size_t frames) noexcept override;
    void awaitFrames(std::size_t frames) override;

  private:
    std::size_t pull(float* interleaved, std::size_t frames) noexcept;
    void beginEpoch(std::uint32_t epoch) noexcept;
    void anchor(std::size_t offset, bool running) noexcept;
    void fadeIn(float* interleaved, std::size_t frames) noexcept;

    DecoderThread& m_decoder;
    SpectrumTap* const m_tap;
    std::shared_ptr<StreamPipe> m_pipe; ///< changes only while there is no stream

    // From the main thread to the audio thread. The gain stands for itself, so relaxed will do.
    LatestValue<EqualizerCurve> m_curves;
    std::atomic<float> m_gain{1};

    // The audio thread's.
    EqualizerCurve m_curve;
    Equalizer m_equalizer;
    GainStage m_gainStage;
    std::uint32_t m_epoch = 0;
    std::int64_t m_streamFrame = 0;
    std::int64_t m_mediaFrame = 0;
    std::size_t m_fadeFrames = 0;
    std::size_t m_fadeLeft = 0;
    bool m_sounding = false;
};

} // namespace halvane
