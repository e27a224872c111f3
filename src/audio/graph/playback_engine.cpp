// SPDX-License-Identifier: MIT
#include "audio/graph/playback_engine.h"

#include "audio/graph/decibels.h"
#include "platform/log.h"
#include "platform/thread_check.h"

#include <QPointer>

#include <algorithm>

namespace halvane {

AudioPlaybackEngine::AudioPlaybackEngine(SoundOutput& output, Clock& clock,
                                         std::shared_ptr<const CloudFiles> cloudFiles,
                                         QObject* parent)
    : TransportEngine(parent)
    , m_output(output)
    , m_tap(m_spectrum, output)
    , m_node(output, clock, &m_tap)
    , m_settings(m_node.graph())
    , m_opener(std::move(cloudFiles)) {
    connect(&output, &SoundOutput::configurationChanged, this,
            &AudioPlaybackEngine::handleConfigurationChange);
    connect(&output, &SoundOutput::deviceSampleRateChanged, this,
            &AudioPlaybackEngine::outputSampleRateChanged);
    connect(&output, &SoundOutput::pauseRequested, this, &AudioPlaybackEngine::pauseRequested);
    connect(&m_node, &PlayerNode::startFailed, this, [this](const QString& reason) {
        m_playing = false;
        Q_EMIT playbackInterrupted(reason);
    });
}

void AudioPlaybackEngine::open(const QString& path) {
    assertOwnThread(*this);
    auto file = takeOpened(path);
    unload();
    if (file) {
        post([this, file] { take(file); });
        return;
    }
    m_opener.open(path, [this](FileOpener::Outcome outcome) {
        if (outcome.file)
            take(std::move(outcome.file));
        else if (outcome.isInCloud)
            Q_EMIT foundInCloud();
        else
            Q_EMIT openFailed(outcome.failure);
    });
}

void AudioPlaybackEngine::take(std::shared_ptr<AudioFile> file) {
    m_file = std::move(file);
    m_node.setFormat(m_file->format());
    m_settings.setSampleRate(m_file->format().sampleRate);
    Q_EMIT opened();
}

/// The file if it has been opened to follow the current one, and none of it has been read.
std::shared_ptr<AudioFile> AudioPlaybackEngine::takeOpened(const QString& path) {
    if (m_setAside.file && m_setAside.path == path)
        return std::move(m_setAside.file);
    if (m_pendingNext.file && m_pendingNext.path == path && m_node.unscheduleLast())
        return std::move(m_pendingNext.file);
    return nullptr;
}

void AudioPlaybackEngine::unload() {
    assertOwnThread(*this);
    ++m_scheduleGeneration;
    m_node.stop();
    m_file.reset();
    dropPending();
    m_segmentStartFrame = 0;
    m_playing = false;
}

void AudioPlaybackEngine::dropPending() {
    m_opener.cancel();
    m_pendingNext = {};
    m_setAside = {};
    m_chainPriorFrames = 0;
}

std::int64_t AudioPlaybackEngine::frameAt(double seconds) const {
    if (!m_file)
        return 0;
    const double frame = std::max(seconds, 0.0) * m_file->format().sampleRate;
    // Compared as doubles first: a position past all bounds must not overflow the integer.
    const auto length = m_file->lengthFrames();
    return frame < double(length) ? std::int64_t(frame) : length;
}

Result<> AudioPlaybackEngine::schedule(std::int64_t startFrame, bool andPlay) {
    if (!m_file)
        return {};
    ++m_scheduleGeneration;
    const auto remaining = m_file->lengthFrames() - startFrame;
    m_node.stop();
    dropPending();
    m_playing = false;
    m_segmentStartFrame = startFrame;
    if (remaining < 1) {
        if (andPlay)
            post([this] { Q_EMIT trackEnded(); });
        return {};
    }
    m_node.schedule(m_file, startFrame, remaining, float(linearGain(m_trackGain)), completion());
    if (!andPlay)
        return {};
    auto played = m_node.play();
    m_playing = static_cast<bool>(played);
    return played;
}

void AudioPlaybackEngine::pause() {
    assertOwnThread(*this);
    m_node.pause();
    m_playing = false;
}

Result<> AudioPlaybackEngine::resume() {
    assertOwnThread(*this);
    if (!m_file || m_playing)
        return {};
    if (!m_node.hasStream() || !m_node.hasScheduled())
        return schedule(elapsedFrames(), true);
    auto played = m_node.play();
    m_playing = static_cast<bool>(played);
    return played;
}

std::int64_t AudioPlaybackEngine::elapsedFrames() const {
    if (!m_file)
        return 0;
    const auto frame = m_segmentStartFrame + m_node.framesHeard() - m_chainPriorFrames;
    return std::clamp<std::int64_t>(frame, 0, m_file->lengthFrames());
}

bool AudioPlaybackEngine::prescheduleNextIfCompatible(const QString& path, double gain) {
    assertOwnThread(*this);
    // With nothing in front of it, the next file would begin on its own.
    if (!m_file || m_pendingNext.file || m_opener.isOpening() || !m_node.hasScheduled())
        return false;
    m_setAside = {};
    m_opener.open(path, [this, path, gain](FileOpener::Outcome outcome) {
        if (outcome.file)
            follow({std::move(outcome.file), path, gain});
        else if (outcome.isInCloud)
            Q_EMIT nextFoundInCloud(path);
        Q_EMIT prescheduleSettled(m_pendingNext.file != nullptr);
    });
    return true;
}

void AudioPlaybackEngine::follow(NextFile next) {
    if (next.file->format() != m_file->format() || !m_node.hasScheduled()) {
        m_setAside = std::move(next);
        return;
    }
    m_pendingNext = std::move(next);
    m_node.schedule(m_pendingNext.file, 0, m_pendingNext.file->lengthFrames(),
                    float(linearGain(m_pendingNext.gain)), completion());
}

bool AudioPlaybackEngine::setNextGain(const QString& path, double dB) {
    assertOwnThread(*this);
    if (!m_pendingNext.file || m_pendingNext.path != path)
        return false;
    m_pendingNext.gain = dB;
    m_node.setLastGain(float(linearGain(dB)));
    return true;
}

std::optional<QString> AudioPlaybackEngine::adoptPrescheduledTrack() {
    assertOwnThread(*this);
    if (!m_pendingNext.file)
        return std::nullopt;
    m_chainPriorFrames = m_node.framesBeforeLast();
    m_file = std::move(m_pendingNext.file);
    m_trackGain = m_pendingNext.gain;
    m_segmentStartFrame = 0;
    return std::exchange(m_pendingNext.path, {});
}

void AudioPlaybackEngine::invalidatePreschedule() {
    assertOwnThread(*this);
    m_opener.cancel();
    m_setAside = {};
    if (!m_pendingNext.file)
        return;
    if (m_node.unscheduleLast()) { // nothing of it has been decoded, so nothing is heard of this
        m_pendingNext = {};
        return;
    }
    const bool wasPlaying = m_playing;
    if (const auto scheduled = schedule(elapsedFrames(), wasPlaying); !scheduled)
        qCWarning(libraryLog, "going on without the next track failed: %ls",
                  qUtf16Printable(scheduled.failure().text));
}

void AudioPlaybackEngine::handleConfigurationChange() {
    assertOwnThread(*this);
    if (!m_file) {
        m_node.closeStream();
        return;
    }
    const auto position = elapsedFrames();
    const bool wasPlaying = m_playing;
    m_node.closeStream();
    if (const auto scheduled = schedule(position, wasPlaying); !scheduled)
        Q_EMIT playbackInterrupted(scheduled.failure().text);
    else
        Q_EMIT graphRebuilt();
}

Result<> AudioPlaybackEngine::setOutputDevice(std::optional<std::uint32_t> id) {
    assertOwnThread(*this);
    const auto position = elapsedFrames();
    const bool wasPlaying = m_playing;
    if (m_file) { // one that is being opened needs no stream yet
        ++m_scheduleGeneration;
        m_node.stop();
        dropPending();
        m_segmentStartFrame = position;
        m_playing = false;
    }
    auto moved = moveTo(id, position, wasPlaying);
    if (!moved && !schedule(position, wasPlaying))
        return moved;
    if (m_file)
        post([this] { Q_EMIT graphRebuilt(); });
    return moved;
}

Result<> AudioPlaybackEngine::moveTo(std::optional<std::uint32_t> device, std::int64_t position,
                                     bool wasPlaying) {
    if (auto set = m_output.setDevice(device); !set)
        return set;
    m_node.closeStream();
    auto scheduled = schedule(position, wasPlaying);
    if (scheduled) {
        m_device = device;
    } else { // the device is there and does not play
        m_node.closeStream();
        (void)m_output.setDevice(m_device);
    }
    return scheduled;
}

/// The audio scheduled now has been heard; a later generation has thrown it away.
std::function<void()> AudioPlaybackEngine::completion() {
    return [this, generation = m_scheduleGeneration] { endOfPlayback(generation); };
}

void AudioPlaybackEngine::endOfPlayback(std::int64_t generation) {
    if (generation != m_scheduleGeneration)
        return;
    if (!m_pendingNext.file)
        m_playing = false;
    const QPointer<AudioPlaybackEngine> engine(this);
    Q_EMIT trackEnded();
    // Nobody had more to play: silence needs no stream.
    if (engine && !m_playing && generation == m_scheduleGeneration)
        m_node.pause();
}

/// Calls from the event loop, unless something else has been scheduled by then.
void AudioPlaybackEngine::post(std::function<void()> call) {
    QMetaObject::invokeMethod(
        this,
        [this, generation = m_scheduleGeneration, call = std::move(call)] {
            if (generation == m_scheduleGeneration)
                call();
        },
        Qt::QueuedConnection);
}

bool AudioPlaybackEngine::hasFile() const {
    assertOwnThread(*this);
    return m_file != nullptr;
}

double AudioPlaybackEngine::durationSeconds() const {
    assertOwnThread(*this);
    return m_file ? m_file->durationSeconds() : 0;
}

double AudioPlaybackEngine::fileSampleRate() const {
    assertOwnThread(*this);
    return m_file ? m_file->format().sampleRate : 0;
}

double AudioPlaybackEngine::outputSampleRate() const {
    assertOwnThread(*this);
    return m_output.deviceSampleRate();
}

bool AudioPlaybackEngine::isPlaying() const {
    assertOwnThread(*this);
    return m_playing;
}

bool AudioPlaybackEngine::isWaitingForDisk() const {
    assertOwnThread(*this);
    return m_file ? m_node.isStarved() : m_opener.isOpening();
}

double AudioPlaybackEngine::elapsedSeconds() const {
    assertOwnThread(*this);
    return m_file ? double(elapsedFrames()) / m_file->format().sampleRate : 0;
}

Result<> AudioPlaybackEngine::scheduleSegment(double fromSeconds, bool andPlay) {
    assertOwnThread(*this);
    return schedule(frameAt(fromSeconds), andPlay);
}

void AudioPlaybackEngine::setEQ(bool enabled, const std::vector<double>& gains, double preamp) {
    assertOwnThread(*this);
    m_settings.setEQ(enabled, gains, preamp);
    m_node.revise();
}

void AudioPlaybackEngine::setTrackGain(double dB) {
    assertOwnThread(*this);
    m_trackGain = dB;
    m_node.setGain(float(linearGain(dB)));
}

void AudioPlaybackEngine::setVolume(double volume) {
    assertOwnThread(*this);
    m_settings.setVolume(volume);
    m_node.revise();
}

SpectrumModel& AudioPlaybackEngine::spectrum() {
    assertOwnThread(*this);
    return m_spectrum;
}

} // namespace halvane
