// SPDX-License-Identifier: MIT
#include "audio/graph/player_node.h"

#include "audio/analysis/spectrum_tap.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace halvane {
namespace {

using std::chrono::milliseconds;

/// How long starting waits for the first sound to be decoded: less than a frame of the screen.
constexpr milliseconds firstSound{10};

/// What is heard is known to about a millisecond. Where nothing follows, the sound may be cut off
/// as soon as its end is told, so that is told a little late.
constexpr milliseconds surelyHeard{15};

/// How long to wait for frames that are still to be heard. Long timers are allowed to be late by a
/// twentieth, so the last stretch gets one of its own.
milliseconds timeToHear(std::int64_t frames, int sampleRate) {
    const double ms = 1000.0 * double(frames) / sampleRate;
    return milliseconds(std::int64_t(ms > 600 ? ms - std::max(300.0, ms * 0.07) : std::ceil(ms)));
}

} // namespace

PlayerNode::PlayerNode(SoundOutput& output, Clock& clock, SpectrumTap* tap, QObject* parent)
    : QObject(parent)
    , m_output(output)
    , m_clock(clock)
    , m_tap(tap)
    , m_decoder([this, news = m_news.address()](std::uint64_t id, std::int64_t frames) {
        news.post([this, id, frames] { segmentCutShort(id, frames); });
    })
    , m_graph(m_decoder, tap) {
}

PlayerNode::~PlayerNode() {
    closeStream();
}

void PlayerNode::setFormat(const StreamFormat& format) {
    if (m_pipe && m_pipe->format() == format)
        return;
    closeStream();
    m_pipe = std::make_shared<StreamPipe>(format);
    stop();
}

void PlayerNode::stop() {
    pause();
    m_segments.clear();
    m_framesCompleted = 0;
    m_timeline.begin(++m_epoch);
    if (m_streamOpen) {
        m_output.flush();
        if (m_tap)
            m_tap->discard();
    }
    if (m_pipe) {
        m_pipe->dropUnplayed();
        m_pipe->request(m_epoch);
        m_decoder.begin(m_pipe, m_epoch);
    }
}

void PlayerNode::closeStream() {
    if (!m_streamOpen)
        return;
    pause();
    (void)framesHeard(); // the last answer of this stream
    m_streamOpen = false;
    m_output.close();
}

void PlayerNode::schedule(std::shared_ptr<AudioFile> file, std::int64_t startFrame,
                          std::int64_t frames, float gain, std::function<void()> heard) {
    const auto begin =
        m_segments.empty() ? m_framesCompleted : m_segments.back().begin + m_segments.back().frames;
    if (begin == 0)
        m_pipe->setFadesIn(startFrame > 0);
    m_segments.push_back({++m_lastId, begin, frames, gain, std::move(heard)});
    publishGains();
    m_decoder.append({m_lastId, std::move(file), startFrame, frames});
    arm();
}

void PlayerNode::setGain(float gain) {
    if (!m_segments.empty())
        change(m_segments.front(), gain);
}

void PlayerNode::setLastGain(float gain) {
    if (!m_segments.empty())
        change(m_segments.back(), gain);
}

void PlayerNode::change(Segment& segment, float gain) {
    if (std::exchange(segment.gain, gain) == gain)
        return;
    publishGains();
    revise();
}

void PlayerNode::revise() {
    if (m_playing)
        m_output.revise();
}

void PlayerNode::publishGains() {
    SegmentGains gains;
    for (std::size_t i = 0; i < std::min(m_segments.size(), gains.all.size()); ++i)
        gains.all[i] = {m_segments[i].id, m_segments[i].gain};
    m_graph.setSegmentGains(gains);
}

bool PlayerNode::unscheduleLast() {
    if (m_segments.empty() || !m_decoder.remove(m_segments.back().id))
        return false;
    m_segments.pop_back();
    return true;
}

Result<> PlayerNode::play() {
    if (!m_streamOpen || !m_output.isOpen()) {
        closeStream();
        m_graph.beginStream(m_pipe);
        if (m_tap)
            m_tap->beginStream(m_pipe->format());
        if (auto opened = m_output.open(m_pipe->format(), m_graph); !opened)
            return opened;
        m_streamOpen = true;
    }
    const auto enough = StreamPipe::firstFrames(m_pipe->format().sampleRate);
    if (m_decoder.awaitFrames(enough, firstSound))
        return startSound();
    m_playing = true;
    m_decoder.whenFilled(enough, [this, epoch = m_epoch, news = m_news.address()] {
        news.post([this, epoch] { startLate(epoch); });
    });
    return {};
}

Result<> PlayerNode::startSound() {
    if (auto started = m_output.start(); !started)
        return started;
    m_playing = true;
    m_decoder.setRunning(true);
    if (m_tap)
        m_tap->setActive(true);
    arm();
    return {};
}

void PlayerNode::startLate(std::uint32_t epoch) {
    if (!m_playing || epoch != m_epoch || !hasStream() || m_output.isRunning())
        return;
    const auto started = startSound();
    if (started)
        return;
    m_playing = false;
    Q_EMIT startFailed(started.failure().text);
}

void PlayerNode::pause() {
    m_timer.reset();
    m_playing = false;
    if (m_streamOpen)
        m_output.pause();
    m_decoder.setRunning(false);
    if (m_tap)
        m_tap->setActive(false);
}

bool PlayerNode::isStarved() const {
    return m_playing && hasStream() && (!m_output.isRunning() || m_decoder.isDry());
}

std::int64_t PlayerNode::framesHeard() const {
    return m_streamOpen ? m_timeline.mediaHeard(m_pipe->anchors, m_output.framesHeard())
                        : m_timeline.last();
}

std::int64_t PlayerNode::framesBeforeLast() const {
    return m_segments.empty() ? m_framesCompleted : m_segments.back().begin;
}

void PlayerNode::segmentCutShort(std::uint64_t id, std::int64_t frames) {
    std::int64_t missing = 0;
    for (Segment& segment : m_segments) {
        segment.begin -= missing;
        if (segment.id == id) {
            missing = segment.frames - frames;
            segment.frames = frames;
        }
    }
    arm();
}

/// Sets the timer for the end of the segment that is being heard. Nothing to hear, no timer.
void PlayerNode::arm() {
    m_timer.reset();
    m_heardAtLastCheck = -1;
    m_endReached = false;
    if (!m_playing || m_segments.empty())
        return;
    const auto remaining = m_segments.front().begin + m_segments.front().frames - framesHeard();
    m_timer =
        m_clock.after(timeToHear(std::max<std::int64_t>(remaining, 0), m_pipe->format().sampleRate),
                      [this] { checkHeard(); });
}

void PlayerNode::checkHeard() {
    Segment& front = m_segments.front();
    const auto heard = framesHeard();
    const auto remaining = front.begin + front.frames - heard;
    if (remaining > 0) {
        // Where the sound has stalled there is no hurry to look again.
        const auto stalled = heard == m_heardAtLastCheck ? milliseconds(20) : milliseconds(1);
        m_heardAtLastCheck = heard;
        m_timer =
            m_clock.after(std::max(stalled, timeToHear(remaining, m_pipe->format().sampleRate)),
                          [this] { checkHeard(); });
        return;
    }
    if (m_segments.size() == 1 && !std::exchange(m_endReached, true)) {
        m_timer = m_clock.after(surelyHeard, [this] { checkHeard(); });
        return;
    }
    m_framesCompleted = front.begin + front.frames;
    const auto completion = std::move(front.heard);
    m_segments.pop_front();
    arm();
    if (completion)
        completion();
}

} // namespace halvane
