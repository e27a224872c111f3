// SPDX-License-Identifier: MIT
#include "audio/graph/playback_engine.h"

#include "platform/log.h"
#include "platform/thread_check.h"

#include <QPointer>

#include <algorithm>

namespace halvane {

AudioPlaybackEngine::AudioPlaybackEngine(SoundOutput& output, Clock& clock, QObject* parent)
    : QObject(parent)
    , m_output(output)
    , m_tap(m_spectrum, output)
    , m_node(output, clock, &m_tap)
    , m_settings(m_node.graph()) {
    output.onConfigurationChange = [this] { handleConfigurationChange(); };
    output.onDeviceSampleRateChange = [this] { Q_EMIT outputSampleRateChanged(); };
    output.onPauseRequest = [this](bool pause) {
        if (onPauseRequested)
            onPauseRequested(pause);
    };
}

AudioPlaybackEngine::~AudioPlaybackEngine() {
    m_output.onConfigurationChange = nullptr;
    m_output.onDeviceSampleRateChange = nullptr;
    m_output.onPauseRequest = nullptr;
}

std::optional<QString> AudioPlaybackEngine::load(const QString& path) {
    assertOwnThread(*this);
    auto file = takeOpened(path);
    unload();
    if (!file) {
        auto opened = AudioFile::open(path);
        if (!opened.file)
            return opened.error;
        file = std::move(opened.file);
    }
    m_file = std::move(file);
    m_node.setFormat(m_file->format());
    m_settings.setSampleRate(m_file->format().sampleRate);
    return std::nullopt;
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

std::optional<QString> AudioPlaybackEngine::schedule(std::int64_t startFrame, bool andPlay) {
    if (!m_file)
        return std::nullopt;
    const auto generation = ++m_scheduleGeneration;
    const auto remaining = m_file->lengthFrames() - startFrame;
    m_node.stop();
    dropPending();
    m_playing = false;
    m_segmentStartFrame = startFrame;
    if (remaining < 1) {
        if (andPlay)
            post(generation, &AudioPlaybackEngine::reportTrackEnd);
        return std::nullopt;
    }
    m_node.schedule(m_file, startFrame, remaining, completion());
    if (!andPlay)
        return std::nullopt;
    if (auto error = m_node.play())
        return error;
    m_playing = true;
    return std::nullopt;
}

void AudioPlaybackEngine::pause() {
    assertOwnThread(*this);
    m_node.pause();
    m_playing = false;
}

std::optional<QString> AudioPlaybackEngine::resume() {
    assertOwnThread(*this);
    if (!m_file || m_playing)
        return std::nullopt;
    if (!m_node.hasStream() || !m_node.hasScheduled())
        return schedule(elapsedFrames(), true);
    if (auto error = m_node.play())
        return error;
    m_playing = true;
    return std::nullopt;
}

std::int64_t AudioPlaybackEngine::elapsedFrames() const {
    if (!m_file)
        return 0;
    const auto frame = m_segmentStartFrame + m_node.framesHeard() - m_chainPriorFrames;
    return std::clamp<std::int64_t>(frame, 0, m_file->lengthFrames());
}

bool AudioPlaybackEngine::prescheduleNextIfCompatible(const QString& path) {
    assertOwnThread(*this);
    // With nothing in front of it, the next file would begin on its own.
    if (!m_file || m_pendingNext.file || m_opener.isOpening() || !m_node.hasScheduled())
        return false;
    m_setAside = {};
    m_opener.open(path, [this, path](AudioFile::Opened opened) {
        follow(path, std::move(opened));
        Q_EMIT prescheduleSettled(m_pendingNext.file != nullptr);
    });
    return true;
}

void AudioPlaybackEngine::follow(const QString& path, AudioFile::Opened opened) {
    if (!opened.file)
        return;
    if (opened.file->format() != m_file->format() || !m_node.hasScheduled()) {
        m_setAside = {std::move(opened.file), path};
        return;
    }
    m_pendingNext = {std::move(opened.file), path};
    m_node.schedule(m_pendingNext.file, 0, m_pendingNext.file->lengthFrames(), completion());
}

std::optional<QString> AudioPlaybackEngine::adoptPrescheduledTrack() {
    assertOwnThread(*this);
    if (!m_pendingNext.file)
        return std::nullopt;
    m_chainPriorFrames = m_node.framesBeforeLast();
    m_file = std::move(m_pendingNext.file);
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
    if (auto error = schedule(elapsedFrames(), wasPlaying))
        qCWarning(libraryLog, "going on without the next track failed: %ls",
                  qUtf16Printable(*error));
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
    if (const auto error = schedule(position, wasPlaying)) {
        if (onPlaybackInterrupted)
            onPlaybackInterrupted(*error);
    } else {
        reportRebuilt();
    }
}

std::optional<QString> AudioPlaybackEngine::setOutputDevice(std::optional<std::uint32_t> id) {
    assertOwnThread(*this);
    ++m_scheduleGeneration;
    const auto position = elapsedFrames();
    const bool wasPlaying = m_playing;
    m_node.stop();
    dropPending();
    m_segmentStartFrame = position;
    m_playing = false;

    auto error = m_output.setDevice(id);
    if (!error) {
        m_node.closeStream();
        error = schedule(position, wasPlaying);
        if (error) { // the device is there and does not play
            m_node.closeStream();
            (void)m_output.setDevice(m_device);
        } else {
            m_device = id;
        }
    }
    if (error && schedule(position, wasPlaying))
        return error;
    if (m_file)
        post(m_scheduleGeneration, &AudioPlaybackEngine::reportRebuilt);
    return error;
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
    reportTrackEnd();
    // Nobody had more to play: silence needs no stream.
    if (engine && !m_playing && generation == m_scheduleGeneration)
        m_node.pause();
}

void AudioPlaybackEngine::reportTrackEnd() {
    if (onTrackEnd)
        onTrackEnd();
}

void AudioPlaybackEngine::reportRebuilt() {
    if (onGraphRebuilt)
        onGraphRebuilt();
}

/// Calls from the event loop, unless something else has been scheduled by then.
void AudioPlaybackEngine::post(std::int64_t generation, void (AudioPlaybackEngine::*operation)()) {
    QMetaObject::invokeMethod(
        this,
        [this, generation, operation] {
            if (generation == m_scheduleGeneration)
                (this->*operation)();
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

double AudioPlaybackEngine::elapsedSeconds() const {
    assertOwnThread(*this);
    return m_file ? double(elapsedFrames()) / m_file->format().sampleRate : 0;
}

std::optional<QString> AudioPlaybackEngine::scheduleSegment(double fromSeconds, bool andPlay) {
    assertOwnThread(*this);
    return schedule(frameAt(fromSeconds), andPlay);
}

void AudioPlaybackEngine::setEQ(bool enabled, const std::vector<double>& gains, double preamp) {
    assertOwnThread(*this);
    m_settings.setEQ(enabled, gains, preamp);
}

void AudioPlaybackEngine::setTrackGain(double dB) {
    assertOwnThread(*this);
    m_settings.setTrackGain(dB);
}

void AudioPlaybackEngine::setVolume(double volume) {
    assertOwnThread(*this);
    m_settings.setVolume(volume);
}

SpectrumModel& AudioPlaybackEngine::spectrum() {
    assertOwnThread(*this);
    return m_spectrum;
}

} // namespace halvane
