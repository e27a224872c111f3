// SPDX-License-Identifier: MIT
#include "audio/graph/render_graph.h"

#include "audio/analysis/spectrum_tap.h"
#include "audio/graph/decoder_thread.h"

#include <algorithm>
#include <utility>

namespace halvane {

namespace {

/// A filter of the lowest band rings for about 15 ms: after this nothing tells that it was begun
/// in the middle.
constexpr int runUpMilliseconds = 300;
constexpr std::size_t runUpBlock = 1024; // frames

} // namespace

RenderGraph::RenderGraph(DecoderThread& decoder, SpectrumTap* tap)
    : m_decoder(decoder)
    , m_tap(tap) {
}

void RenderGraph::beginStream(std::shared_ptr<StreamPipe> pipe) {
    m_pipe = std::move(pipe);
    m_fadeFrames = std::size_t(m_pipe->format().sampleRate) / 200; // 5 ms
    m_epoch = 0;
    m_streamFrame = 0;
    m_silentSince = 0;
    m_reach = 0;
    m_sounding = false;
    m_starts = {};
    m_past.begin(m_pipe->format());
    m_runUp.resize(runUpBlock * m_pipe->channels());
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
    finish(interleaved, frames);
}

void RenderGraph::finish(float* interleaved, std::size_t frames) noexcept {
    m_past.pass(interleaved, frames);
    if (m_tap)
        m_tap->push(interleaved, frames, m_streamFrame);
    m_streamFrame += std::int64_t(frames);
}

/// Where a run begins has been told already, so that is not left.
std::size_t RenderGraph::rewind(std::size_t frames) noexcept {
    frames = std::min({frames, std::size_t(m_streamFrame - m_reach), m_past.keptFrames()});
    const auto silence = m_sounding ? 0 : std::size_t(m_streamFrame - m_silentSince);
    auto taken = std::min(frames, silence);
    m_streamFrame -= std::int64_t(taken);
    if (frames > silence && (m_sounding || takeEndBack())) {
        const auto sound = goBack(frames - silence);
        m_streamFrame -= std::int64_t(sound);
        taken += sound;
        if (silence > 0)
            anchor(0, true);
    }
    if (taken > 0)
        m_past.goBack(taken);
    return taken;
}

/// The run before the present silence goes on. Needs room to say both that it does and that it
/// ends, as a run that begins.
bool RenderGraph::takeEndBack() noexcept {
    m_sounding = m_pipe->anchors.writeAvailable() >= 2;
    return m_sounding;
}

/// To the ring's samples before, with every stage as it is now.
std::size_t RenderGraph::goBack(std::size_t frames) noexcept {
    const auto& format = m_pipe->format();
    const std::size_t channels = m_pipe->channels();
    const auto runUp = std::min(StreamPipe::framesOf(format.sampleRate, runUpMilliseconds),
                                std::size_t(m_mediaFrame) - frames);
    const auto back = m_pipe->samples.goBack((frames + runUp) * channels) / channels;
    if (back == 0)
        return 0;
    frames = std::min(frames, back);
    if (const auto* curve = m_curves.take())
        m_curve = *curve;
    m_equalizer.reset(format.sampleRate, format.channels, m_curve);
    for (std::size_t left = back - frames; left > 0;) {
        const auto block = std::min(left, runUpBlock);
        m_pipe->samples.read(m_runUp.data(), block * channels);
        m_equalizer.process(m_runUp.data(), block);
        left -= block;
    }
    m_mediaFrame -= std::int64_t(frames);
    const auto intoRun = std::size_t(m_streamFrame - m_reach) - frames;
    m_fadeLeft = m_runFade - std::min(m_runFade, intoRun);
    if (const auto* gains = m_segmentGains.take())
        m_gains = *gains;
    m_starts.goBackTo(m_pipe->samples.consumed());
    m_segmentStage.jumpTo(gainOf(m_starts.current()));
    m_volumeStage.jumpTo(m_volume.load(std::memory_order_relaxed));
    return frames;
}

void RenderGraph::rest(float* interleaved, std::size_t frames) noexcept {
    if (m_sounding)
        endRun(0);
    std::fill_n(interleaved, frames * m_pipe->channels(), 0.0f);
    finish(interleaved, frames);
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
        if (!isEnoughThere() || m_pipe->anchors.writeAvailable() < 2)
            return 0;
        beginRun();
    }
    const std::size_t channels = m_pipe->channels();
    const bool isComplete = m_pipe->isComplete(); // first, as it says that all samples are there
    const auto there = m_pipe->samples.readAvailable() / channels;
    const auto got = std::min(frames, there);
    m_pipe->samples.read(interleaved, got * channels);
    if (m_fadeLeft > 0)
        fadeIn(interleaved, got);
    // What would be too little to fade out with is left for the next run.
    const bool runsDry = !isComplete && there < frames + m_fadeFrames;
    if (runsDry)
        fadeOut(interleaved, got);
    m_mediaFrame += std::int64_t(got);
    if (runsDry || got < frames)
        endRun(got);
    return got;
}

void RenderGraph::beginRun() noexcept {
    m_sounding = true;
    m_reach = m_streamFrame;
    anchor(0, true);
    m_runFade = m_mediaFrame > 0 || m_pipe->fadesIn() ? m_fadeFrames : 0;
    m_fadeLeft = m_runFade;
}

void RenderGraph::endRun(std::size_t offset) noexcept {
    m_sounding = false;
    m_silentSince = m_streamFrame + std::int64_t(offset);
    anchor(offset, false);
}

/// A run that began with the first few frames would have its first hole right behind them.
bool RenderGraph::isEnoughThere() const noexcept {
    const bool isComplete = m_pipe->isComplete(); // first, as it says that all samples are there
    const auto frames = m_pipe->samples.readAvailable() / m_pipe->channels();
    return frames > 0 &&
           (isComplete || frames >= StreamPipe::firstFrames(m_pipe->format().sampleRate));
}

/// Nothing of what went before is carried over: no rest of it in the filters, no ramp.
void RenderGraph::beginEpoch(std::uint32_t epoch) noexcept {
    m_epoch = epoch;
    m_pipe->samples.skipTo(m_pipe->beginning());
    m_mediaFrame = 0;
    if (std::exchange(m_sounding, false))
        m_silentSince = m_streamFrame;
    m_reach = m_silentSince; // the epoch before is not gone back to
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
        m_segmentStage.setGain(gainOf(m_starts.current()));
    }
    for (SegmentStart start; m_pipe->starts.read(&start, 1) == 1;)
        m_starts.add(start);
    const std::size_t channels = m_pipe->channels();
    const std::uint64_t blockEnd = m_pipe->samples.consumed();
    const std::uint64_t blockBegin = blockEnd - sounding * channels;
    std::size_t done = 0;
    while (const auto* next = m_starts.passNextBefore(blockEnd)) {
        // What has been dropped may have begun before the block.
        const auto from = std::max(next->sample, blockBegin) - blockBegin;
        const auto joint = static_cast<std::size_t>(from) / channels;
        m_segmentStage.process(interleaved + done * channels, joint - done);
        done = joint;
        m_segmentStage.jumpTo(gainOf(next->segment));
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

/// The same of sound that stops there, because the disk is late.
void RenderGraph::fadeOut(float* interleaved, std::size_t frames) noexcept {
    const std::size_t channels = m_pipe->channels();
    float* end = interleaved + frames * channels;
    const auto faded = std::min(frames, m_fadeFrames);
    for (std::size_t left = 1; left <= faded; ++left) {
        const float gain = float(left) / float(faded + 1);
        for (std::size_t c = 0; c < channels; ++c)
            *--end *= gain;
    }
}

void RenderGraph::awaitFrames(std::size_t frames) {
    const auto first = StreamPipe::firstFrames(m_pipe->format().sampleRate);
    (void)m_decoder.awaitFrames(std::max(frames + m_fadeFrames, first), std::chrono::minutes(1));
}

} // namespace halvane
