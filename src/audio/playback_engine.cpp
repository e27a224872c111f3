// SPDX-License-Identifier: MIT
#include "audio/playback_engine.h"

#include "audio/audio_file.h"
#include "audio/decibels.h"
#include "audio/equalizer.h"
#include "audio/player_node.h"
#include "audio/spectrum_model.h"
#include "audio/spectrum_tap.h"
#include "platform/log.h"
#include "platform/thread_check.h"

#include <QPointer>

#include <algorithm>

namespace halvane {

/// Positions are kept in frames, so that taking playback up again never loses or repeats one.
class AudioPlaybackEngine::Impl {
  public:
    Impl(AudioPlaybackEngine& engine, SoundOutput& output, Clock& clock)
        : m_engine(engine)
        , m_output(output)
        , m_tap(m_spectrum, output)
        , m_node(output, clock, &m_tap) {
        applyGain();
    }

    std::optional<QString> load(const QString& path);
    void unload();
    std::optional<QString> scheduleSegment(std::int64_t startFrame, bool andPlay);
    std::int64_t frameAt(double seconds) const;
    void pause();
    std::optional<QString> resume();
    std::int64_t elapsedFrames();

    bool preschedule(const QString& path);
    std::optional<QString> adopt();
    void invalidatePreschedule();

    void handleConfigurationChange();
    std::optional<QString> setOutputDevice(std::optional<std::uint32_t> id);

    void setEQ(bool enabled, const std::vector<double>& gains, double preamp);
    void applyEQ();
    void applyGain();

    AudioPlaybackEngine& m_engine;
    SoundOutput& m_output;
    SpectrumModel m_spectrum;
    SpectrumTap m_tap;
    PlayerNode m_node;

    std::shared_ptr<AudioFile> m_file;
    std::int64_t m_segmentStartFrame = 0;
    std::int64_t m_scheduleGeneration = 0; ///< counts what was thrown away
    std::int64_t m_lastValidElapsed = 0;   ///< frames
    std::shared_ptr<AudioFile> m_pendingNextFile;
    QString m_pendingNextPath;
    std::int64_t m_chainPriorFrames = 0; ///< heard of the chain's earlier files
    bool m_playing = false;

    std::optional<std::uint32_t> m_device;
    EqualizerValues m_equalizer;
    double m_trackGain = 0; ///< dB
    double m_volume = 0.72;

  private:
    void dropPending();
    void endOfPlayback(std::int64_t generation);
    std::function<void()> completion();
    void post(std::int64_t generation, void (Impl::*operation)());
    void reportTrackEnd();
    void reportRebuilt();
};

std::optional<QString> AudioPlaybackEngine::Impl::load(const QString& path) {
    unload();
    auto opened = AudioFile::open(path);
    if (!opened.file)
        return opened.error;
    m_file = std::move(opened.file);
    m_node.setFormat(m_file->format());
    applyEQ();
    return std::nullopt;
}

void AudioPlaybackEngine::Impl::unload() {
    ++m_scheduleGeneration;
    m_node.stop();
    m_file.reset();
    dropPending();
    m_segmentStartFrame = 0;
    m_lastValidElapsed = 0;
    m_playing = false;
}

void AudioPlaybackEngine::Impl::dropPending() {
    m_pendingNextFile.reset();
    m_pendingNextPath.clear();
    m_chainPriorFrames = 0;
}

std::int64_t AudioPlaybackEngine::Impl::frameAt(double seconds) const {
    if (!m_file)
        return 0;
    const double frame = std::max(seconds, 0.0) * m_file->format().sampleRate;
    // Compared as doubles first: a position past all bounds must not overflow the integer.
    const auto length = m_file->lengthFrames();
    return frame < double(length) ? std::int64_t(frame) : length;
}

std::optional<QString> AudioPlaybackEngine::Impl::scheduleSegment(std::int64_t startFrame,
                                                                  bool andPlay) {
    if (!m_file)
        return std::nullopt;
    const auto generation = ++m_scheduleGeneration;
    const auto remaining = m_file->lengthFrames() - startFrame;
    m_node.stop();
    dropPending();
    m_playing = false;
    m_segmentStartFrame = startFrame;
    m_lastValidElapsed = startFrame;
    if (remaining < 1) {
        if (andPlay)
            post(generation, &Impl::reportTrackEnd);
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

void AudioPlaybackEngine::Impl::pause() {
    m_node.pause();
    m_playing = false;
    (void)elapsedFrames();
}

std::optional<QString> AudioPlaybackEngine::Impl::resume() {
    if (!m_file || m_playing)
        return std::nullopt;
    if (!m_node.hasStream() || !m_node.hasScheduled())
        return scheduleSegment(elapsedFrames(), true);
    if (auto error = m_node.play())
        return error;
    m_playing = true;
    return std::nullopt;
}

std::int64_t AudioPlaybackEngine::Impl::elapsedFrames() {
    if (!m_file)
        return 0;
    const auto frame = m_segmentStartFrame + m_node.framesHeard() - m_chainPriorFrames;
    m_lastValidElapsed = std::clamp<std::int64_t>(frame, 0, m_file->lengthFrames());
    return m_lastValidElapsed;
}

bool AudioPlaybackEngine::Impl::preschedule(const QString& path) {
    // With nothing in front of it, the next file would begin on its own.
    if (!m_file || m_pendingNextFile || !m_node.hasScheduled())
        return false;
    auto opened = AudioFile::open(path);
    if (!opened.file || opened.file->format() != m_file->format())
        return false;
    m_pendingNextFile = std::move(opened.file);
    m_pendingNextPath = path;
    m_node.schedule(m_pendingNextFile, 0, m_pendingNextFile->lengthFrames(), completion());
    return true;
}

std::optional<QString> AudioPlaybackEngine::Impl::adopt() {
    if (!m_pendingNextFile)
        return std::nullopt;
    m_chainPriorFrames = m_node.framesBeforeLast();
    m_file = std::move(m_pendingNextFile);
    m_segmentStartFrame = 0;
    m_lastValidElapsed = 0;
    return std::exchange(m_pendingNextPath, {});
}

void AudioPlaybackEngine::Impl::invalidatePreschedule() {
    if (!m_pendingNextFile)
        return;
    if (m_node.unscheduleLast()) { // nothing of it has been decoded, so nothing is heard of this
        m_pendingNextFile.reset();
        m_pendingNextPath.clear();
        return;
    }
    const bool wasPlaying = m_playing;
    if (auto error = scheduleSegment(elapsedFrames(), wasPlaying))
        qCWarning(libraryLog, "going on without the next track failed: %ls",
                  qUtf16Printable(*error));
}

void AudioPlaybackEngine::Impl::handleConfigurationChange() {
    if (!m_file) {
        m_node.closeStream();
        return;
    }
    const auto position = elapsedFrames();
    const bool wasPlaying = m_playing;
    m_node.closeStream();
    if (const auto error = scheduleSegment(position, wasPlaying)) {
        if (m_engine.onPlaybackInterrupted)
            m_engine.onPlaybackInterrupted(*error);
    } else {
        reportRebuilt();
    }
}

std::optional<QString> AudioPlaybackEngine::Impl::setOutputDevice(std::optional<std::uint32_t> id) {
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
        error = scheduleSegment(position, wasPlaying);
        if (error) { // the device is there and does not play
            m_node.closeStream();
            (void)m_output.setDevice(m_device);
        } else {
            m_device = id;
        }
    }
    if (error && scheduleSegment(position, wasPlaying))
        return error;
    if (m_file)
        post(m_scheduleGeneration, &Impl::reportRebuilt);
    return error;
}

/// The audio scheduled now has been heard; a later generation has thrown it away.
std::function<void()> AudioPlaybackEngine::Impl::completion() {
    return [this, generation = m_scheduleGeneration] { endOfPlayback(generation); };
}

void AudioPlaybackEngine::Impl::endOfPlayback(std::int64_t generation) {
    if (generation != m_scheduleGeneration)
        return;
    if (!m_pendingNextFile) {
        m_playing = false;
        (void)elapsedFrames();
    }
    const QPointer<AudioPlaybackEngine> engine(&m_engine);
    reportTrackEnd();
    // Nobody had more to play: silence needs no stream.
    if (engine && !m_playing && generation == m_scheduleGeneration)
        m_node.pause();
}

void AudioPlaybackEngine::Impl::reportTrackEnd() {
    if (m_engine.onTrackEnd)
        m_engine.onTrackEnd();
}

void AudioPlaybackEngine::Impl::reportRebuilt() {
    if (m_engine.onGraphRebuilt)
        m_engine.onGraphRebuilt();
}

/// Calls from the event loop, unless something else has been scheduled by then.
void AudioPlaybackEngine::Impl::post(std::int64_t generation, void (Impl::*operation)()) {
    QMetaObject::invokeMethod(
        &m_engine,
        [this, generation, operation] {
            if (generation == m_scheduleGeneration)
                (this->*operation)();
        },
        Qt::QueuedConnection);
}

void AudioPlaybackEngine::Impl::setEQ(bool enabled, const std::vector<double>& gains,
                                      double preamp) {
    const auto limited = [](double dB) {
        return std::clamp(dB, -equalizerGainLimit, equalizerGainLimit);
    };
    m_equalizer.enabled = enabled;
    for (std::size_t i = 0; i < std::min(gains.size(), m_equalizer.gains.size()); ++i)
        m_equalizer.gains[i] = limited(gains[i]);
    m_equalizer.preamp = limited(preamp);
    applyEQ();
}

void AudioPlaybackEngine::Impl::applyEQ() {
    if (m_file)
        m_node.graph().setEqualizer(equalizerCurve(m_equalizer, m_file->format().sampleRate));
}

void AudioPlaybackEngine::Impl::applyGain() {
    m_node.graph().setGain(
        float(linearGain(std::clamp(m_trackGain, -18.0, 12.0)) * std::clamp(m_volume, 0.0, 1.0)));
}

AudioPlaybackEngine::AudioPlaybackEngine(SoundOutput& output, Clock& clock, QObject* parent)
    : QObject(parent)
    , m_impl(std::make_unique<Impl>(*this, output, clock)) {
    output.onConfigurationChange = [this] { handleConfigurationChange(); };
    output.onDeviceSampleRateChange = [this] { Q_EMIT outputSampleRateChanged(); };
}

AudioPlaybackEngine::~AudioPlaybackEngine() {
    m_impl->m_output.onConfigurationChange = nullptr;
    m_impl->m_output.onDeviceSampleRateChange = nullptr;
}

std::optional<QString> AudioPlaybackEngine::load(const QString& path) {
    assertOwnThread(*this);
    return m_impl->load(path);
}

void AudioPlaybackEngine::unload() {
    assertOwnThread(*this);
    m_impl->unload();
}

bool AudioPlaybackEngine::hasFile() const {
    assertOwnThread(*this);
    return m_impl->m_file != nullptr;
}

double AudioPlaybackEngine::durationSeconds() const {
    assertOwnThread(*this);
    return m_impl->m_file ? m_impl->m_file->durationSeconds() : 0;
}

double AudioPlaybackEngine::fileSampleRate() const {
    assertOwnThread(*this);
    return m_impl->m_file ? m_impl->m_file->format().sampleRate : 0;
}

double AudioPlaybackEngine::outputSampleRate() const {
    assertOwnThread(*this);
    return m_impl->m_output.deviceSampleRate();
}

std::optional<QString> AudioPlaybackEngine::scheduleSegment(double fromSeconds, bool andPlay) {
    assertOwnThread(*this);
    return m_impl->scheduleSegment(m_impl->frameAt(fromSeconds), andPlay);
}

void AudioPlaybackEngine::pause() {
    assertOwnThread(*this);
    m_impl->pause();
}

std::optional<QString> AudioPlaybackEngine::resume() {
    assertOwnThread(*this);
    return m_impl->resume();
}

bool AudioPlaybackEngine::isPlaying() const {
    assertOwnThread(*this);
    return m_impl->m_playing;
}

double AudioPlaybackEngine::elapsedSeconds() const {
    assertOwnThread(*this);
    return m_impl->m_file ? double(m_impl->elapsedFrames()) / m_impl->m_file->format().sampleRate
                          : 0;
}

bool AudioPlaybackEngine::prescheduleNextIfCompatible(const QString& path) {
    assertOwnThread(*this);
    return m_impl->preschedule(path);
}

std::optional<QString> AudioPlaybackEngine::adoptPrescheduledTrack() {
    assertOwnThread(*this);
    return m_impl->adopt();
}

void AudioPlaybackEngine::invalidatePreschedule() {
    assertOwnThread(*this);
    m_impl->invalidatePreschedule();
}

void AudioPlaybackEngine::handleConfigurationChange() {
    assertOwnThread(*this);
    m_impl->handleConfigurationChange();
}

std::optional<QString> AudioPlaybackEngine::setOutputDevice(std::optional<std::uint32_t> id) {
    assertOwnThread(*this);
    return m_impl->setOutputDevice(id);
}

void AudioPlaybackEngine::setEQ(bool enabled, const std::vector<double>& gains, double preamp) {
    assertOwnThread(*this);
    m_impl->setEQ(enabled, gains, preamp);
}

void AudioPlaybackEngine::setTrackGain(double dB) {
    assertOwnThread(*this);
    m_impl->m_trackGain = dB;
    m_impl->applyGain();
}

void AudioPlaybackEngine::setVolume(double volume) {
    assertOwnThread(*this);
    m_impl->m_volume = volume;
    m_impl->applyGain();
}

SpectrumModel& AudioPlaybackEngine::spectrum() {
    assertOwnThread(*this);
    return m_impl->m_spectrum;
}

} // namespace halvane
