// SPDX-License-Identifier: MIT
#pragma once

#include "audio/graph/equalizer.h"
#include "audio/graph/gain_stage.h"
#include "audio/graph/latest_value.h"
#include "audio/graph/output_history.h"
#include "audio/graph/segment_starts.h"
#include "audio/graph/stream_pipe.h"

#include <array>
#include <atomic>
#include <cstdint>
#include <memory>
#include <vector>

namespace halvane {

class DecoderThread;
class SpectrumTap;

/// The gains (linear) of the segments that are scheduled, at most two at once.
struct SegmentGains {
    struct Of {
        std::uint64_t segment = 0; ///< its id; 0: none
        float gain = 1;
    };
    std::array<Of, 2> all;
};

/// What the sound server pulls from: the ring, through the equalizer, each segment's gain and the
/// volume, past the tap. Where the ring is empty the stream is silent, and the pipe is told where.
/// With the equalizer flat and both gains 1 the samples are those of the file.
class RenderGraph final : public RenderSource {
  public:
    /// Main thread. Both must outlive the graph; the tap may be missing.
    RenderGraph(DecoderThread& decoder, SpectrumTap* tap);

    /// The next stream plays from this pipe. Main thread, while there is no stream.
    void beginStream(std::shared_ptr<StreamPipe> pipe);
    /// A curve that was made for the stream's rate. Main thread.
    void setEqualizer(const EqualizerCurve& curve) { m_curves.publish(curve); }
    /// The gain of a segment is to be told before the segment is handed to the decoder: it is in
    /// force from the segment's first sample on. A change of it in between is ramped. Main thread.
    void setSegmentGains(const SegmentGains& gains) { m_segmentGains.publish(gains); }
    /// Linear. Main thread.
    void setVolume(float volume) { m_volume.store(volume, std::memory_order_relaxed); }

    void render(float* interleaved, std::size_t frames) noexcept override;
    std::size_t rewind(std::size_t frames) noexcept override;
    void rest(float* interleaved, std::size_t frames) noexcept override;
    void awaitFrames(std::size_t frames) override;

  private:
    std::size_t pull(float* interleaved, std::size_t frames) noexcept;
    [[nodiscard]] bool isEnoughThere() const noexcept;
    void beginRun() noexcept;
    void endRun(std::size_t offset) noexcept;
    void beginEpoch(std::uint32_t epoch) noexcept;
    void anchor(std::size_t offset, bool running) noexcept;
    void fadeIn(float* interleaved, std::size_t frames) noexcept;
    void fadeOut(float* interleaved, std::size_t frames) noexcept;
    void applySegmentGains(float* interleaved, std::size_t frames, std::size_t sounding) noexcept;
    [[nodiscard]] float gainOf(std::uint64_t segment) const noexcept;
    bool takeEndBack() noexcept;
    std::size_t goBack(std::size_t frames) noexcept;
    void finish(float* interleaved, std::size_t frames) noexcept;

    DecoderThread& m_decoder;
    SpectrumTap* const m_tap;
    std::shared_ptr<StreamPipe> m_pipe; ///< changes only while there is no stream

    // From the main thread to the audio thread. The volume stands for itself, so relaxed will do.
    LatestValue<EqualizerCurve> m_curves;
    LatestValue<SegmentGains> m_segmentGains;
    std::atomic<float> m_volume{1};

    // The audio thread's.
    EqualizerCurve m_curve;
    Equalizer m_equalizer;
    GainStage m_segmentStage;
    GainStage m_volumeStage;
    SegmentGains m_gains;
    SegmentStarts m_starts;
    std::uint32_t m_epoch = 0;
    std::int64_t m_streamFrame = 0;
    std::int64_t m_mediaFrame = 0;
    std::int64_t m_silentSince = 0; ///< the stream's frame; while it doesn't sound
    std::int64_t m_reach = 0;       ///< the earliest frame of the stream that can be gone back to
    std::size_t m_fadeFrames = 0;
    std::size_t m_runFade = 0; ///< frames over which the present run fades in
    std::size_t m_fadeLeft = 0;
    bool m_sounding = false;
    OutputHistory m_past;
    std::vector<float> m_runUp; ///< for the filters
};

} // namespace halvane
