// SPDX-License-Identifier: MIT
#include "audio/graph/render_graph.h"

#include "audio/analysis/spectrum_tap.h"
#include "audio/graph/decoder_thread.h"

#include <algorithm>

namespace halvane {

RenderGraph::RenderGraph(DecoderThread& decoder, SpectrumTap* tap)
    : m_decoder(decoder)
    , m_tap(tap) {
}

void RenderGraph::beginStream(std::shared_ptr<StreamPipe> pipe) {
    m_pipe = std::move(pipe);
    m_fadeFrames = std::size_t(m_pipe->format().sampleRate) / 200; // 5 ms
    m_epoch = 0;
    m_streamFrame = 0;
    m_sounding = false;
    m_segment = 0;
    m_hasNextStart = false;
}

void RenderGraph::render(float* interleaved, std::size_t frames) noexcept {
    const std::size_t channels = m_pipe->channels();
    const auto sounding = pull(interleaved, frames);
    std::fill(interleaved + sounding * channels, interleaved + frames * channels, 0.0f);
    if (m_epoch != 0) {
        if (const auto* curve = m_curves.take()) {
            m_curve = *curve;
            m_equalizer.setCurve(m_curve);
        }
        m_equalizer.process(interleaved, frames);
        applySegmentGains(interleaved, frames, sounding);
        m_volumeStage.setGain(m_volume.load(std::memory_order_relaxed));
        m_volumeStage.process(interleaved, frames);
    }
    if (m_tap)
        m_tap->push(interleaved, frames, m_streamFrame);
    m_streamFrame += std::int64_t(frames);
}

/// Takes what there is from the ring, and says in the pipe where the sound begins and stops to run.
std::size_t RenderGraph::pull(float* interleaved, std::size_t frames) noexcept {
    const auto epoch = m_pipe->requested();
    if (epoch != m_epoch) {
        if (!m_pipe->isReady(epoch))
            return 0;
        beginEpoch(epoch);
    }
    if (!m_sounding) {
        // A run begins only when there is room to say both that it does and that it ends.
        if (m_pipe->samples.readAvailable() == 0 || m_pipe->anchors.writeAvailable() < 2)
            return 0;
        m_sounding = true;
        anchor(0, true);
        if (m_mediaFrame > 0 || m_pipe->fadesIn())
            m_fadeLeft = m_fadeFrames;
    }
    const std::size_t channels = m_pipe->channels();
    const auto got = m_pipe->samples.read(interleaved, frames * channels) / channels;
    if (m_fadeLeft > 0)
        fadeIn(interleaved, got);
    m_mediaFrame += std::int64_t(got);
    if (got < frames) {
        m_sounding = false;
        anchor(got, false);
    }
    return got;
}

/// Nothing of what went before is carried over: no rest of it in the filters, no ramp.
void RenderGraph::beginEpoch(std::uint32_t epoch) noexcept {
    m_epoch = epoch;
    m_pipe->samples.skipTo(m_pipe->beginning());
    m_mediaFrame = 0;
    m_sounding = false;
    m_fadeLeft = 0;
    if (const auto* curve = m_curves.take())
        m_curve = *curve;
    const auto& format = m_pipe->format();
    m_equalizer.reset(format.sampleRate, format.channels, m_curve);
    m_volumeStage.reset(format.sampleRate, format.channels,
                        m_volume.load(std::memory_order_relaxed));
    m_segmentStage.reset(format.sampleRate, format.channels, 1); // the first segment brings its own
}

/// Each stretch of the block under the gain of the segment that it belongs to. The gains are taken
/// after the samples have been read, so that those of every segment in the block are among them.
void RenderGraph::applySegmentGains(float* interleaved, std::size_t frames,
                                    std::size_t sounding) noexcept {
    if (const auto* gains = m_segmentGains.take()) {
        m_gains = *gains;
        m_segmentStage.setGain(gainOf(m_segment));
    }
    const std::size_t channels = m_pipe->channels();
    const std::uint64_t blockEnd = m_pipe->samples.consumed();
    const std::uint64_t blockBegin = blockEnd - sounding * channels;
    std::size_t done = 0;
    for (;;) {
        if (!m_hasNextStart)
            m_hasNextStart = m_pipe->starts.read(&m_nextStart, 1) == 1;
        if (!m_hasNextStart || m_nextStart.sample >= blockEnd)
            break;
        // What has been dropped may have begun before the block.
        const auto from = std::max(m_nextStart.sample, blockBegin) - blockBegin;
        const auto joint = static_cast<std::size_t>(from) / channels;
        m_segmentStage.process(interleaved + done * channels, joint - done);
        done = joint;
        m_segment = m_nextStart.segment;
        m_segmentStage.jumpTo(gainOf(m_segment));
        m_hasNextStart = false;
    }
    m_segmentStage.process(interleaved + done * channels, frames - done);
}

/// What is still in the ring of a segment that has been dropped keeps the gain that it has.
float RenderGraph::gainOf(std::uint64_t segment) const noexcept {
    for (const auto& of : m_gains.all) {
        if (of.segment == segment)
            return of.gain;
    }
    return m_segmentStage.target();
}

void RenderGraph::anchor(std::size_t offset, bool running) noexcept {
    const StreamAnchor here{m_streamFrame + std::int64_t(offset), m_mediaFrame, m_epoch, running};
    m_pipe->anchors.write(&here, 1);
}

/// Sound that begins in the middle of a wave would click.
void RenderGraph::fadeIn(float* interleaved, std::size_t frames) noexcept {
    const std::size_t channels = m_pipe->channels();
    for (; frames > 0 && m_fadeLeft > 0; --frames, --m_fadeLeft) {
        const float gain = float(m_fadeFrames - m_fadeLeft + 1) / float(m_fadeFrames + 1);
        for (std::size_t c = 0; c < channels; ++c)
            *interleaved++ *= gain;
    }
}

void RenderGraph::awaitFrames(std::size_t frames) {
    m_decoder.awaitFrames(frames, std::chrono::minutes(1));
}

} // namespace halvane
