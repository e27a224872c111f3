// SPDX-License-Identifier: MIT
// From the choice of an entry to its first sound, and what is done where that does not come
#include "library/playback/transport.h"
#include "library/sound/sound_check.h"
#include "library/user/language_setting.h"
#include "platform/log.h"
#include "platform/thread_check.h"
#include "presentation/l10n.h"

#include <algorithm>

namespace halvane {

void Transport::proceed(const Advance& advance) {
    if (advance.startsCycle)
        m_shufflePlayedIDs.clear();
    if (!advance.entry)
        return finishPlaybackAtQueueEnd();
    start(*advance.entry, advance.userInitiated ? AskedBy::user : AskedBy::advance);
}

void Transport::start(std::size_t row, AskedBy askedBy) {
    const QString path = m_queue.record(row).path();
    if (askedBy != AskedBy::advance)
        Q_EMIT chosen();
    // What plays goes on while the file comes.
    if (askedBy == AskedBy::user && m_files.state(path) == TrackAvailability::inCloud)
        return download(path, m_queue.record(row).title);
    m_opening = Opening{.path = path, .startsOver = m_queue.currentRow() == row};
    m_engine.open(path);
    makeCurrent(row, askedBy);
    setPlaying(true);
    m_progress.show(0, 0);
    m_progress.start();
    Q_EMIT loadedFileChanged();
    Q_EMIT nowPlayingChanged();
}

void Transport::takeUp(std::size_t row, double seconds) {
    assertOwnThread(*this);
    const double length = m_queue.record(row).durationSeconds.value_or(0);
    const double fraction = length > 0 ? std::clamp(seconds / length, 0.0, 1.0) : 0.0;
    m_opening = Opening{.path = m_queue.record(row).path(),
                        .startsOver = true,
                        .fraction = fraction,
                        .isTakenUp = true,
                        .isAsked = false};
    makeCurrent(row, AskedBy::user);
    m_progress.show(fraction, fraction * length);
    Q_EMIT loadedFileChanged();
    Q_EMIT nowPlayingChanged();
}

void Transport::makeCurrent(std::size_t row, AskedBy askedBy) {
    m_queue.setCurrentRow(row);
    m_shufflePlayedIDs.insert(m_queue.idAt(row));
    m_askedForIDs.remove(m_queue.idAt(row));
    m_askedBy = askedBy;
    if (m_isPlaying)
        m_disk.begin();
    Q_EMIT becameCurrent(m_queue.item(row));
}

void Transport::opened() {
    if (!m_opening)
        return;
    const Opening opening = *std::exchange(m_opening, std::nullopt);
    m_files.markAvailable(opening.path);
    if (m_askedBy == AskedBy::collection)
        m_askedBy = AskedBy::user; // its first entry that plays has been found
    m_engine.setTrackGain(currentGain());
    const double from = opening.fraction * m_engine.durationSeconds();
    if (const auto scheduled = m_engine.scheduleSegment(from, m_isPlaying); !scheduled) {
        qCCritical(libraryLog, "engine load/play failed: %s",
                   qUtf8Printable(scheduled.failure().text));
        return handlePlaybackFailure(scheduled.failure().text);
    }
    if (!opening.isTakenUp)
        Q_EMIT playStarted(opening.path);
    Q_EMIT loadedFileChanged();
    Q_EMIT nowPlayingChanged();
    if (opening.startsOver)
        Q_EMIT positionJumped(from);
    attemptGaplessPreschedule();
    qCInfo(libraryLog, "startPlayer: engine playing, duration=%f", m_engine.durationSeconds());
    if (const auto item = m_queue.currentItem())
        Q_EMIT trackChanged(*item);
}

void Transport::foundInCloud() {
    if (!m_opening)
        return;
    const Opening opening = *std::exchange(m_opening, std::nullopt);
    m_files.markInCloud(opening.path);
    if (m_askedBy != AskedBy::advance)
        download(opening.path, currentTitle());
    passOver();
}

void Transport::openFailed(const QString& reason) {
    if (!m_opening)
        return;
    const bool isTakenUp = m_opening->isTakenUp;
    const double seconds = elapsedSeconds();
    const auto row = m_queue.currentRow();
    m_opening.reset();
    qCCritical(libraryLog, "engine load/play failed: %s", qUtf8Printable(reason));
    handlePlaybackFailure(reason);
    // Its disk may come back, and the place is not lost till then.
    if (isTakenUp && row && row == m_queue.currentRow() && !hasLoadedFile())
        takeUp(*row, seconds);
}

// A disk that sleeps, or a network, may need some seconds. What the user has asked for is waited
// for longer than what follows by itself: another entry would be a surprise there.
void Transport::keptWaiting(int looks) {
    constexpr int beforeWord = 2;
    constexpr int beforeNext = 3;
    constexpr int beforeStop = 6;
    const bool isGivenUp = looks >= (m_askedBy == AskedBy::user ? beforeStop : beforeNext);
    if (isGivenUp)
        return giveUpWaiting();
    if (looks % beforeWord == 0)
        m_status.show(L10n::waitingForDisk(currentTitle(), m_language.resolvedLanguage()), false);
}

// The file is there, as far as anybody knows, and so it is not called missing.
void Transport::giveUpWaiting() {
    constexpr int most = 3; // files, one after the other: their disk is the same, then
    qCCritical(libraryLog, "playback failed: the disk of %ls does not answer",
               qUtf16Printable(m_queue.currentPath()));
    m_status.show(L10n::diskDoesNotAnswer(currentTitle(), m_language.resolvedLanguage()), true);
    if (m_askedBy != AskedBy::user && ++m_filesHeldUp < most)
        return passOver();
    m_filesHeldUp = 0;
    const auto row = m_queue.currentRow();
    const bool hasBegun = !m_opening || m_opening->isTakenUp;
    const double seconds = elapsedSeconds();
    stopPlayer(true);
    if (row && hasBegun)
        takeUp(*row, seconds); // the place is kept until the disk comes back
}

void Transport::handlePlaybackFailure(const QString& description) {
    qCCritical(libraryLog, "playback failed: %s", qUtf8Printable(description));
    if (const QString path = m_queue.currentPath(); !path.isEmpty())
        m_files.markMissing(path);
    m_status.show(L10n::playbackFailure(currentTitle(), m_language.resolvedLanguage()), true);
    passOver();
}

// The current entry does not play.
void Transport::passOver() {
    if (!m_isPlaying || m_askedBy == AskedBy::user)
        return stopPlayer(true); // whoever has paused meanwhile is not surprised by another entry
    if (m_askedBy == AskedBy::advance)
        return playNext(false);
    const auto first = entryToStart(plannedQueue());
    first ? start(*first, AskedBy::collection) : stopPlayer(true);
}

void Transport::download(const QString& path, const QString& title) {
    m_files.startCloudDownloads({path});
    m_status.show(L10n::downloadingTrack(title, m_language.resolvedLanguage()), false);
}

QString Transport::currentTitle() const {
    const auto row = m_queue.currentRow();
    return row ? m_queue.record(*row).title : QString();
}

} // namespace halvane
