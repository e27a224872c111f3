// SPDX-License-Identifier: MIT
#include "library/playback/transport.h"

#include "platform/log.h"
#include "platform/thread_check.h"
#include "presentation/l10n.h"

#include <QRandomGenerator>

#include <algorithm>
#include <cmath>
#include <random>

using namespace std::chrono_literals;

namespace halvane {

/// The queue as the planner sees it at this moment.
class Transport::View final : public QueueView {
  public:
    explicit View(const Transport& transport)
        : m_queue(transport.m_with.queue)
        , m_files(transport.m_with.files)
        , m_played(transport.m_shufflePlayedIDs) {}

    [[nodiscard]] std::size_t size() const override { return m_queue.size(); }
    [[nodiscard]] std::optional<std::size_t> current() const override {
        return m_queue.currentRow();
    }
    [[nodiscard]] bool isPlayable(std::size_t entry) const override {
        return m_files.state(path(entry)) == TrackAvailability::available;
    }
    [[nodiscard]] bool wasPlayed(std::size_t entry) const override {
        return m_played.contains(m_queue.idAt(entry));
    }
    [[nodiscard]] bool isSameFile(std::size_t entry, std::size_t other) const override {
        return path(entry) == path(other);
    }

  private:
    [[nodiscard]] const QString& path(std::size_t entry) const {
        return m_queue.record(entry).sourceURL->standardizedPath();
    }

    const PlayQueue& m_queue;
    const FileAvailability& m_files;
    const QSet<QUuid>& m_played;
};

RandomIndex systemRandomIndex() {
    return [](std::size_t count) {
        std::uniform_int_distribution<std::size_t> index(0, count - 1);
        return index(*QRandomGenerator64::system());
    };
}

Transport::Transport(TransportCollaborators with, QObject* parent)
    : QObject(parent)
    , m_with(std::move(with)) {
}

Transport::~Transport() = default;

// Settings

void Transport::setVolume(double volume) {
    assertOwnThread(*this);
    const double clamped = volume > 0 ? std::min(volume, 1.0) : 0.0;
    const bool changed = m_volume != clamped;
    m_volume = clamped;
    m_with.engine.setVolume(clamped);
    if (changed)
        Q_EMIT volumeChanged();
}

void Transport::setShuffleEnabled(bool enabled) {
    if (m_mode.shuffle == enabled)
        return;
    m_mode.shuffle = enabled;
    Q_EMIT isShuffleEnabledChanged();
}

void Transport::setRepeatMode(PlaybackRepeatMode mode) {
    if (m_mode.repeat == mode)
        return;
    m_mode.repeat = mode;
    Q_EMIT repeatModeChanged();
}

void Transport::setPlaying(bool playing) {
    m_isPausedOnRequest = false;
    if (m_isPlaying == playing)
        return;
    m_isPlaying = playing;
    Q_EMIT isPlayingChanged();
}

// Starting

void Transport::showNothingToPlay() {
    m_with.status.show(L10n::text(L10nKey::nothingToPlay, m_with.language()), true);
}

void Transport::playCollection(const TrackRows& tracks, const QString& startPath,
                               const QString& context) {
    assertOwnThread(*this);
    const bool hasFiles = std::any_of(tracks.cbegin(), tracks.cend(), [](const TrackPtr& track) {
        return track->sourceURL.has_value();
    });
    if (!hasFiles)
        return showNothingToPlay();
    m_with.queue.assign(tracks, context);
    m_shufflePlayedIDs.clear();
    playItem(m_with.queue.idAt(m_with.queue.rowOfPath(startPath).value_or(0)), true);
}

void Transport::playItem(const QUuid& id, bool userInitiated) {
    assertOwnThread(*this);
    const auto row = m_with.queue.rowOfID(id);
    if (!row)
        return;
    if (userInitiated && m_with.queue.currentRow() == row && m_with.engine.hasFile())
        return togglePlayback();
    proceed({row, userInitiated});
}

void Transport::proceed(Advance advance) {
    // On a drive that went away everything is skipped; the disk is asked about each, so a long run
    // gives the event loop a turn now and then.
    constexpr int skipsInOneTurn = 32;
    m_skipping.reset();
    for (int skips = 0;; ++skips) {
        if (advance.startsCycle)
            m_shufflePlayedIDs.clear();
        if (!advance.entry)
            return finishPlaybackAtQueueEnd();
        if (start(*advance.entry, advance.userInitiated) == Outcome::settled)
            return;
        if (skips == skipsInOneTurn) {
            m_skipping = m_with.clock.after(0ms, [this] { playNext(false); });
            return;
        }
        advance = nextEntry(View(*this), m_mode, false, m_with.random);
    }
}

Transport::Outcome Transport::start(std::size_t row, bool userInitiated) {
    const QString path = m_with.queue.record(row).path();
    const QString title = m_with.queue.record(row).title;
    const Outcome passedOver = userInitiated ? Outcome::settled : Outcome::skip;
    if (m_with.files.isCloudEvicted(path)) {
        m_with.files.markInCloud(path);
        if (userInitiated) {
            m_with.files.startCloudDownloads({path});
            m_with.status.show(L10n::downloadingTrack(title, m_with.language()), false);
        }
        return passedOver;
    }
    if (!m_with.files.isReadable(path)) {
        m_with.files.markUnavailable(path);
        m_with.status.show(L10n::playbackFailure(title, m_with.language()), true);
        return passedOver;
    }
    m_with.files.markAvailable(path);
    const bool startsOver = m_with.queue.currentRow() == row;
    makeCurrent(row, userInitiated);
    if (const auto failure = startPlayer(path)) {
        qCCritical(libraryLog, "engine load/play failed: %s", qUtf8Printable(*failure));
        return handlePlaybackFailure(*failure);
    }
    if (startsOver)
        Q_EMIT positionJumped(0);
    if (const auto item = m_with.queue.currentItem())
        Q_EMIT trackChanged(*item);
    return Outcome::settled;
}

void Transport::makeCurrent(std::size_t row, bool userInitiated) {
    m_with.queue.setCurrentRow(row);
    m_shufflePlayedIDs.insert(m_with.queue.idAt(row));
    m_currentPlaybackIsUserInitiated = userInitiated;
    Q_EMIT becameCurrent(m_with.queue.item(row));
}

std::optional<QString> Transport::startPlayer(const QString& path) {
    if (auto failure = m_with.engine.load(path))
        return failure;
    applySoundCheck(path);
    if (auto failure = m_with.engine.scheduleSegment(0, true))
        return failure;
    Q_EMIT playStarted(path);
    setPlaying(true);
    Q_EMIT loadedFileChanged();
    m_with.progress.show(0, 0);
    m_with.progress.start();
    Q_EMIT nowPlayingChanged();
    attemptGaplessPreschedule();
    qCInfo(libraryLog, "startPlayer: engine playing, duration=%f", m_with.engine.durationSeconds());
    return std::nullopt;
}

Transport::Outcome Transport::handlePlaybackFailure(const QString& description) {
    qCCritical(libraryLog, "playback failed: %s", qUtf8Printable(description));
    if (const QString path = m_with.queue.currentPath(); !path.isEmpty())
        m_with.files.markUnavailable(path);
    m_with.status.show(L10n::playbackFailure(currentTitle(), m_with.language()), true);
    if (!m_currentPlaybackIsUserInitiated)
        return Outcome::skip;
    stopPlayer(true);
    return Outcome::settled;
}

QString Transport::currentTitle() const {
    const auto row = m_with.queue.currentRow();
    return row ? m_with.queue.record(*row).title : QString();
}

// Pausing, advancing, stopping

void Transport::togglePlayback() {
    assertOwnThread(*this);
    if (m_isPlaying) {
        m_with.engine.pause();
        setPlaying(false);
        m_with.progress.stop();
        Q_EMIT nowPlayingChanged();
        return;
    }
    if (!m_with.engine.hasFile()) {
        const auto entry = entryToStart(View(*this));
        return entry ? playItem(m_with.queue.idAt(*entry), true) : showNothingToPlay();
    }
    if (const auto failure = m_with.engine.resume())
        return interrupted(*failure);
    setPlaying(true);
    m_with.progress.start();
    Q_EMIT nowPlayingChanged();
    attemptGaplessPreschedule();
}

void Transport::playNext(bool manual) {
    assertOwnThread(*this);
    proceed(nextEntry(View(*this), m_mode, manual, m_with.random));
}

void Transport::playPrevious() {
    assertOwnThread(*this);
    const Advance advance = previousEntry(View(*this), m_mode, m_with.random);
    if (advance.entry)
        proceed(advance);
}

void Transport::finishPlaybackAtQueueEnd() {
    m_with.engine.unload();
    m_with.progress.stop();
    setPlaying(false);
    Q_EMIT loadedFileChanged();
    const auto row = m_with.queue.currentRow();
    m_with.progress.showEnd(row ? m_with.queue.record(*row).duration
                                : m_with.progress.elapsedTime());
    Q_EMIT nowPlayingChanged();
}

void Transport::stopPlayer(bool keepSelection) {
    assertOwnThread(*this);
    m_skipping.reset();
    m_with.engine.unload();
    m_with.progress.stop();
    setPlaying(false);
    Q_EMIT loadedFileChanged();
    m_with.progress.show(0, 0);
    if (!keepSelection)
        m_with.queue.setCurrentRow(std::nullopt);
    Q_EMIT nowPlayingChanged();
}

void Transport::adoptEngineState() {
    setPlaying(m_with.engine.isPlaying());
    if (!m_isPlaying)
        m_with.progress.stop();
    Q_EMIT nowPlayingChanged();
}

// Place and modes

void Transport::scrub(double fraction) {
    const auto row = m_with.queue.currentRow();
    m_with.progress.scrub(fraction, row ? m_with.queue.record(*row).durationSeconds : std::nullopt);
}

void Transport::seek(double fraction) {
    assertOwnThread(*this);
    fraction = fraction > 0 ? std::min(fraction, 1.0) : 0.0;
    const double length = m_with.engine.durationSeconds();
    if (!m_with.engine.hasFile() || !(length > 0)) {
        m_with.progress.show(fraction, m_with.progress.elapsedSeconds());
        return;
    }
    const double target = fraction * length;
    if (const auto failure = m_with.engine.scheduleSegment(target, m_with.engine.isPlaying())) {
        if (handlePlaybackFailure(*failure) == Outcome::skip)
            playNext(false);
        return;
    }
    m_with.progress.show(fraction, target);
    Q_EMIT nowPlayingChanged();
    Q_EMIT positionJumped(target);
    attemptGaplessPreschedule();
}

void Transport::advanceRepeatMode() {
    switch (m_mode.repeat) {
    case PlaybackRepeatMode::off:
        return chooseRepeatMode(PlaybackRepeatMode::all);
    case PlaybackRepeatMode::all:
        return chooseRepeatMode(PlaybackRepeatMode::one);
    case PlaybackRepeatMode::one:
        return chooseRepeatMode(PlaybackRepeatMode::off);
    }
}

void Transport::chooseRepeatMode(PlaybackRepeatMode mode) {
    assertOwnThread(*this);
    if (m_mode.repeat == mode)
        return;
    setRepeatMode(mode);
    replanSuccessor();
}

void Transport::toggleShuffle() {
    assertOwnThread(*this);
    setShuffleEnabled(!m_mode.shuffle);
    m_shufflePlayedIDs.clear();
    replanSuccessor();
}

void Transport::stepVolume(double delta) {
    setVolume(m_volume + delta);
}

bool Transport::canGoNext() const {
    // Shuffle leads somewhere as long as anything plays; asking it costs a pass over the queue.
    const auto first = [](std::size_t) { return std::size_t(0); };
    return m_mode.shuffle ? canPlay()
                          : nextEntry(View(*this), m_mode, true, first).entry.has_value();
}

bool Transport::canGoPrevious() const {
    const auto first = [](std::size_t) { return std::size_t(0); };
    return m_mode.shuffle ? canPlay() : previousEntry(View(*this), m_mode, first).entry.has_value();
}

bool Transport::canPlay() const {
    return hasLoadedFile() || entryToStart(View(*this)).has_value();
}

bool Transport::isTrackPlaying(const QString& path) const {
    return !path.isEmpty() && m_with.queue.currentPath() == path;
}

// Gapless succession

void Transport::replanSuccessor() {
    m_with.engine.invalidatePreschedule();
    attemptGaplessPreschedule();
}

double Transport::gainOrZero(const QString& path) const {
    return m_with.soundCheckGain(path).value_or(0);
}

void Transport::applySoundCheck(const QString& path) {
    m_with.engine.setTrackGain(std::clamp(gainOrZero(path), -18.0, 12.0));
}

void Transport::attemptGaplessPreschedule() {
    assertOwnThread(*this);
    if (!m_with.engine.hasFile())
        return;
    const auto next = gaplessSuccessor(View(*this), m_mode);
    if (!next)
        return;
    // The gain changes only when a track is started; a larger step would be heard as a jump.
    constexpr double largestStep = 2.0; // dB
    const QString path = m_with.queue.record(*next).path();
    if (std::abs(gainOrZero(m_with.queue.currentPath()) - gainOrZero(path)) > largestStep)
        return;
    // To open it would be to download it unasked, and to wait for that.
    if (m_with.files.isCloudEvicted(path))
        return m_with.files.markInCloud(path);
    m_with.engine.prescheduleNextIfCompatible(path);
}

void Transport::advanceUIForGaplessTrack(const QString& path) {
    const auto row = m_with.queue.rowOfPath(path);
    if (!row)
        return playNext(false);
    makeCurrent(*row, false);
    Q_EMIT loadedFileChanged();
    Q_EMIT playStarted(path);
    applySoundCheck(path);
    m_with.progress.show(0, m_with.engine.elapsedSeconds());
    Q_EMIT nowPlayingChanged();
    Q_EMIT trackChanged(m_with.queue.item(*row));
    attemptGaplessPreschedule();
}

// What the engine reports

void Transport::trackEnded() {
    assertOwnThread(*this);
    if (const auto path = m_with.engine.adoptPrescheduledTrack())
        return advanceUIForGaplessTrack(*path);
    setPlaying(false);
    playNext(false);
}

void Transport::pauseRequested(bool pause) {
    assertOwnThread(*this);
    if (pause ? !m_isPlaying : !m_isPausedOnRequest)
        return;
    togglePlayback();
    m_isPausedOnRequest = pause;
}

void Transport::interrupted(const QString& reason) {
    assertOwnThread(*this);
    qCCritical(libraryLog, "playback interrupted: %s", qUtf8Printable(reason));
    setPlaying(false);
    m_with.progress.stop();
    m_with.status.show(L10n::playbackFailure(currentTitle(), m_with.language()), true);
    Q_EMIT nowPlayingChanged();
}

} // namespace halvane
