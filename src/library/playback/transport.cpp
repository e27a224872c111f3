// SPDX-License-Identifier: MIT
#include "library/playback/transport.h"

#include "library/sound/sound_check.h"
#include "library/user/language_setting.h"
#include "platform/log.h"
#include "platform/thread_check.h"
#include "presentation/l10n.h"

#include <QRandomGenerator>

#include <algorithm>
#include <random>

namespace halvane {

RandomIndex systemRandomIndex() {
    return [](std::size_t count) {
        std::uniform_int_distribution<std::size_t> index(0, count - 1);
        return index(*QRandomGenerator64::system());
    };
}

Transport::Transport(TransportEngine& engine, PlayQueue& queue, FileAvailability& files,
                     const SoundCheck& soundCheck, StatusLine& status, ProgressClock& progress,
                     const LanguageSetting& language, Clock& clock, RandomIndex random,
                     QObject* parent)
    : QObject(parent)
    , m_engine(engine)
    , m_queue(queue)
    , m_files(files)
    , m_soundCheck(soundCheck)
    , m_status(status)
    , m_progress(progress)
    , m_language(language)
    , m_random(std::move(random))
    , m_disk(engine, clock) {
    connect(&engine, &TransportEngine::opened, this, &Transport::opened);
    connect(&engine, &TransportEngine::foundInCloud, this, &Transport::foundInCloud);
    connect(&engine, &TransportEngine::nextFoundInCloud, this,
            [this](const QString& path) { m_files.markInCloud(path); });
    connect(&engine, &TransportEngine::openFailed, this, &Transport::openFailed);
    connect(&engine, &TransportEngine::trackEnded, this, &Transport::trackEnded);
    connect(&engine, &TransportEngine::playbackInterrupted, this, &Transport::interrupted);
    connect(&engine, &TransportEngine::graphRebuilt, this, &Transport::attemptGaplessPreschedule);
    connect(&engine, &TransportEngine::pauseRequested, this, &Transport::pauseRequested);
    connect(&m_disk, &DiskWatch::waits, this, &Transport::keptWaiting);
    connect(&m_disk, &DiskWatch::hears, this, [this] { m_filesHeldUp = 0; });
    connect(&soundCheck, &SoundCheck::soundCheckEnabledChanged, this,
            &Transport::applySoundCheckForCurrentTrack);
    connect(&soundCheck, &SoundCheck::levelWishesChanged, this,
            &Transport::applySoundCheckForCurrentTrack);
    connect(&soundCheck, &SoundCheck::gainFound, this, [this](const QString& path) {
        // It may be the last of an album whose gain was not known without it.
        if (m_soundCheck.isByLoudness() || path == m_queue.currentPath() || path == successorPath())
            applySoundCheckForCurrentTrack();
    });
}

void Transport::setPlaying(bool playing) {
    m_isPausedOnRequest = false;
    if (m_isPlaying == playing)
        return;
    m_isPlaying = playing;
    playing ? m_disk.begin() : m_disk.end();
    Q_EMIT isPlayingChanged();
}

// Starting

void Transport::showNothingToPlay() {
    m_status.show(L10n::text(L10nKey::nothingToPlay, m_language.resolvedLanguage()), true);
}

void Transport::playCollection(const TrackRows& tracks, const QString& startPath,
                               const QString& context) {
    assertOwnThread(*this);
    const bool hasFiles = std::any_of(tracks.cbegin(), tracks.cend(), [](const TrackPtr& track) {
        return track->sourceURL.has_value();
    });
    if (!hasFiles)
        return showNothingToPlay();
    m_queue.assign(tracks, context);
    m_shufflePlayedIDs.clear();
    m_askedForIDs.clear();
    const std::size_t asked = m_queue.rowOfPath(startPath).value_or(0);
    const PlannedQueue view = plannedQueue();
    if (const auto row = view.isPlayable(asked) ? asked : entryToStart(view))
        return start(*row, AskedBy::collection);
    stopPlayer(false); // what plays is not in the queue any more
    showNothingToPlay();
}

void Transport::playItem(const QUuid& id, bool userInitiated) {
    assertOwnThread(*this);
    const auto row = m_queue.rowOfID(id);
    if (!row)
        return;
    if (userInitiated && m_queue.currentRow() == row && hasLoadedFile())
        return togglePlayback();
    start(*row, userInitiated ? AskedBy::user : AskedBy::advance);
}

void Transport::playOn(const QUuid& id) {
    const bool playsAlready = m_isPlaying && m_queue.rowOfID(id) == m_queue.currentRow();
    if (!playsAlready)
        playItem(id, true);
}

// Pausing, advancing, stopping

void Transport::togglePlayback() {
    assertOwnThread(*this);
    // While a file is being opened, the engine has nothing to pause or to resume.
    if (m_isPlaying) {
        m_engine.pause();
        setPlaying(false);
        m_progress.stop();
        Q_EMIT nowPlayingChanged();
        return;
    }
    if (!hasLoadedFile()) {
        const auto entry = entryToStart(plannedQueue());
        return entry ? playItem(m_queue.idAt(*entry), true) : showNothingToPlay();
    }
    if (m_opening && !std::exchange(m_opening->isAsked, true))
        m_engine.open(m_opening->path);
    if (const auto resumed = m_engine.resume(); !resumed)
        return interrupted(resumed.failure().text);
    setPlaying(true);
    m_progress.start();
    Q_EMIT nowPlayingChanged();
    attemptGaplessPreschedule();
}

void Transport::playNext(bool manual) {
    assertOwnThread(*this);
    proceed(nextEntry(plannedQueue(), m_mode, manual, m_random));
}

void Transport::playPrevious() {
    assertOwnThread(*this);
    const Advance advance = previousEntry(plannedQueue(), m_mode, m_random);
    if (advance.entry)
        proceed(advance);
}

void Transport::finishPlaybackAtQueueEnd() {
    m_opening.reset();
    m_shufflePlayedIDs.clear(); // the next press of play begins a new cycle
    m_engine.unload();
    m_progress.stop();
    setPlaying(false);
    Q_EMIT loadedFileChanged();
    const auto row = m_queue.currentRow();
    m_progress.showEnd(row ? m_queue.record(*row).duration : m_progress.elapsedTime());
    Q_EMIT nowPlayingChanged();
}

// The next entry stands at its start, as if it had been paused there.
void Transport::waitBeforeNext() {
    m_stopsAfterCurrent = false;
    Q_EMIT stopsAfterCurrentChanged();
    const Advance advance = nextEntry(plannedQueue(), m_mode, false, m_random);
    if (!advance.entry)
        return finishPlaybackAtQueueEnd();
    if (advance.startsCycle)
        m_shufflePlayedIDs.clear();
    waitAt(*advance.entry);
}

void Transport::waitAt(std::size_t row) {
    stopPlayer(true);
    m_opening = Opening{.path = m_queue.record(row).path(), .isAsked = false};
    makeCurrent(row, AskedBy::advance);
    Q_EMIT loadedFileChanged();
    Q_EMIT nowPlayingChanged();
}

void Transport::leave(const std::vector<RowRange>& rows) {
    assertOwnThread(*this);
    const auto row = m_queue.currentRow();
    if (!row || !isIn(rows, *row))
        return;
    const Advance advance = nextEntry(plannedQueue(rows), m_mode, false, m_random);
    if (!advance.entry || !hasLoadedFile())
        return stopPlayer(false);
    if (advance.startsCycle)
        m_shufflePlayedIDs.clear();
    m_isPlaying ? start(*advance.entry, AskedBy::advance) : waitAt(*advance.entry);
}

void Transport::stopPlayer(bool keepSelection) {
    assertOwnThread(*this);
    m_opening.reset();
    m_engine.unload();
    m_progress.stop();
    setPlaying(false);
    Q_EMIT loadedFileChanged();
    m_progress.show(0, 0);
    if (!keepSelection)
        m_queue.setCurrentRow(std::nullopt);
    Q_EMIT nowPlayingChanged();
}

void Transport::adoptEngineState() {
    if (m_opening)
        return; // the engine does not play yet, and will
    setPlaying(m_engine.isPlaying());
    if (!m_isPlaying)
        m_progress.stop();
    Q_EMIT nowPlayingChanged();
}

// What is asked of it

double Transport::elapsedSeconds() const {
    return m_opening ? m_opening->fraction * durationSeconds() : m_engine.elapsedSeconds();
}

// While the file is being opened, as long as its tags say.
double Transport::durationSeconds() const {
    const auto row = m_queue.currentRow();
    return m_opening && row ? m_queue.record(*row).durationSeconds.value_or(0)
                            : m_engine.durationSeconds();
}

bool Transport::canGoNext() const {
    // Shuffle leads somewhere as long as anything plays; asking it costs a pass over the queue.
    const auto first = [](std::size_t) { return std::size_t(0); };
    return m_mode.shuffle ? canPlay()
                          : nextEntry(plannedQueue(), m_mode, true, first).entry.has_value();
}

bool Transport::canGoPrevious() const {
    const auto first = [](std::size_t) { return std::size_t(0); };
    return m_mode.shuffle ? canPlay()
                          : previousEntry(plannedQueue(), m_mode, first).entry.has_value();
}

bool Transport::canPlay() const {
    return hasLoadedFile() || entryToStart(plannedQueue()).has_value();
}

bool Transport::isTrackPlaying(const QString& path) const {
    return !path.isEmpty() && m_queue.currentPath() == path;
}

// What the engine reports

void Transport::trackEnded() {
    assertOwnThread(*this);
    if (const auto path = m_engine.adoptPrescheduledTrack())
        return advanceUIForGaplessTrack(*path);
    if (m_stopsAfterCurrent)
        return waitBeforeNext();
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
    m_progress.stop();
    m_status.show(L10n::playbackFailure(currentTitle(), m_language.resolvedLanguage()), true);
    Q_EMIT nowPlayingChanged();
}

} // namespace halvane
