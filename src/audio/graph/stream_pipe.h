// SPDX-License-Identifier: MIT
#pragma once

#include "audio/graph/sample_ring.h"
#include "platform/sound/sound_output.h"

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <cstdint>

namespace halvane {

/// A place where the sound begins to run, or stops running, in a stream of the output. In between,
/// each frame of the stream is one frame of sound; where it does not run, the stream is silent.
struct StreamAnchor {
    std::int64_t streamFrame = 0; ///< since the stream was opened
    std::int64_t mediaFrame = 0;  ///< since the epoch began
    std::uint32_t epoch = 0;
    bool running = false;
};

/// Where in the ring the sound of a segment begins: a frame's first sample, counted as the ring
/// counts.
struct SegmentStart {
    std::uint64_t sample = 0;
    std::uint64_t segment = 0; ///< its id
};

/// What the decoder thread, the audio thread and the main thread share about one stream's sound.
///
/// Sound comes in epochs: whenever what is scheduled is thrown away, the main thread begins a new
/// one. It may do so only while the output does not render. It stores m_requested with release; the
/// decoder, told apart from this by its own means, ends what it was writing, stores the ring's
/// position in m_begin and then the epoch in m_ready with release. The audio thread plays nothing
/// until it loads that epoch from m_ready with acquire, so it sees m_begin, and then drops from the
/// ring what lies before it. m_begin cannot change under it: for that, another epoch would have to
/// be requested, and nobody renders then.
///
/// The decoder writes a segment's start before the segment's first sample, so whoever has read the
/// sample also sees the start.
class StreamPipe {
  public:
    [[nodiscard]] static constexpr std::size_t framesOf(int sampleRate, int milliseconds) {
        return std::size_t(sampleRate) * std::size_t(milliseconds) / 1000;
    }
    /// How far the decoder runs ahead of the audio thread.
    static constexpr int secondsAhead = 2;
    /// How much must be there for the sound to begin: as much as a server asks for at once, so that
    /// no hole follows the first sound.
    static constexpr std::size_t firstFrames(int sampleRate) {
        return framesOf(sampleRate, RenderSource::queueMilliseconds);
    }
    /// How much of what has been played is kept: what the server has queued may be rendered again,
    /// with a run-up for the filters.
    static constexpr int millisecondsKept = RenderSource::queueMilliseconds + 350;
    /// What the decoder writes at a time: short, so that a seek never waits long for what it makes
    /// useless.
    static constexpr std::size_t blockFrames = 4096;

    explicit StreamPipe(const StreamFormat& format)
        : m_format(format)
        , samples(framesAhead(format.sampleRate) * std::size_t(format.channels),
                  framesOf(format.sampleRate, millisecondsKept) * std::size_t(format.channels))
        , starts(64)
        , anchors(4096) {}

    [[nodiscard]] const StreamFormat& format() const { return m_format; }
    [[nodiscard]] std::size_t channels() const { return std::size_t(m_format.channels); }

    /// Makes room for the next epoch. Main thread, while the output does not render and so leaves
    /// the reader's part to it; what the decoder is writing just now is dropped when the epoch
    /// begins.
    void dropUnplayed() {
        samples.skipTo(samples.written());
        starts.skipTo(starts.written());
    }
    /// Main thread, while the output does not render.
    void request(std::uint32_t epoch) { m_requested.store(epoch, std::memory_order_release); }
    /// Whether the epoch begins in the middle of a wave. Main thread, while the output does not
    /// render.
    void setFadesIn(bool fadesIn) { m_fadesIn.store(fadesIn, std::memory_order_relaxed); }
    /// Decoder: the epoch's first sample is the next one that is written.
    void begin(std::uint32_t epoch) {
        m_begin.store(samples.written(), std::memory_order_relaxed);
        m_ready.store(epoch, std::memory_order_release);
    }

    /// Decoder, under the mutex that it shares with the main thread: all that is scheduled is in
    /// the ring. Stored after the last sample, so whoever sees it sees all of them.
    void setComplete(bool isComplete) { m_isComplete.store(isComplete, std::memory_order_release); }

    /// Audio thread.
    [[nodiscard]] bool isComplete() const { return m_isComplete.load(std::memory_order_acquire); }
    [[nodiscard]] std::uint32_t requested() const {
        return m_requested.load(std::memory_order_acquire);
    }
    [[nodiscard]] bool isReady(std::uint32_t epoch) const {
        return m_ready.load(std::memory_order_acquire) == epoch;
    }
    [[nodiscard]] bool fadesIn() const { return m_fadesIn.load(std::memory_order_relaxed); }

    /// The ring's position where the epoch begins. Audio thread once ready; decoder.
    [[nodiscard]] std::uint64_t beginning() const {
        return m_begin.load(std::memory_order_relaxed);
    }

  private:
    /// At very low rates several blocks are longer than that.
    static constexpr std::size_t framesAhead(int sampleRate) {
        constexpr std::size_t fewestBlocks = 8;
        return std::max(std::size_t(secondsAhead) * std::size_t(sampleRate),
                        fewestBlocks * blockFrames);
    }

    const StreamFormat m_format;
    std::atomic<std::uint32_t> m_requested{0};
    std::atomic<bool> m_fadesIn{false};
    std::atomic<bool> m_isComplete{true};
    std::atomic<std::uint64_t> m_begin{0};
    std::atomic<std::uint32_t> m_ready{0};

  public:
    SampleRing<float> samples;       ///< interleaved; decoder to audio thread, whole frames
    SampleRing<SegmentStart> starts; ///< decoder to audio thread; few, as few are scheduled at once
    SampleRing<StreamAnchor> anchors; ///< audio thread to main thread
};

} // namespace halvane
