// SPDX-License-Identifier: MIT
#pragma once

#include "audio/graph/transport_engine.h"
#include "library/playback/disk_watch.h"
#include "library/playback/planned_queue.h"
#include "library/playback/progress_clock.h"
#include "library/status_line.h"

#include <optional>

namespace halvane {

class LanguageSetting;
class SoundCheck;
enum class Company;

/// The number that RandomIndex asks for, from the system's generator.
RandomIndex systemRandomIndex();

/// Plays the queue: starts, pauses and seeks its entries in the engine, advances when a track ends
/// and skips what does not play. Which entry comes next is the planner's. Main thread.
///
/// The engine opens files beside the main thread, and a disk may take its time. Meanwhile the entry
/// is current already and plays as far as anybody can see: it can be paused, sought in and left for
/// another at once. What the file turns out to be is seen when the engine tells of it.
class Transport : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool isPlaying READ isPlaying NOTIFY isPlayingChanged)
    /// Playing or paused: there is a position to move.
    Q_PROPERTY(bool hasLoadedFile READ hasLoadedFile NOTIFY loadedFileChanged)
    Q_PROPERTY(double volume READ volume WRITE setVolume NOTIFY volumeChanged)
    Q_PROPERTY(bool isMuted READ isMuted NOTIFY volumeChanged)
    Q_PROPERTY(bool isShuffleEnabled READ isShuffleEnabled NOTIFY isShuffleEnabledChanged)
    Q_PROPERTY(halvane::PlaybackRepeatMode repeatMode READ repeatMode NOTIFY repeatModeChanged)

  public:
    /// All references must outlive it.
    Transport(TransportEngine& engine, PlayQueue& queue, FileAvailability& files,
              const SoundCheck& soundCheck, StatusLine& status, ProgressClock& progress,
              const LanguageSetting& language, Clock& clock,
              RandomIndex random = systemRandomIndex(), QObject* parent = nullptr);

    [[nodiscard]] bool isPlaying() const { return m_isPlaying; }
    [[nodiscard]] double volume() const { return m_volume; }
    [[nodiscard]] bool isMuted() const { return m_volume == 0; }
    [[nodiscard]] bool isShuffleEnabled() const { return m_mode.shuffle; }
    [[nodiscard]] PlaybackRepeatMode repeatMode() const { return m_mode.repeat; }
    /// Once the current entry has ended, the next one waits for the user.
    [[nodiscard]] bool stopsAfterCurrent() const { return m_stopsAfterCurrent; }
    [[nodiscard]] bool hasLoadedFile() const { return m_opening || m_engine.hasFile(); }
    /// Of the current entry, playing or paused: where it stands and how long it is. Seconds; 0
    /// without one.
    [[nodiscard]] double elapsedSeconds() const;
    [[nodiscard]] double durationSeconds() const;

    /// 0...1, clamped; nonsense is silence.
    void setVolume(double volume);
    // The restored settings; the user's changes come through the operations below.
    void setShuffleEnabled(bool enabled);
    void setRepeatMode(PlaybackRepeatMode mode);

    /// Makes a queue of the tracks that have a file and starts the one of `startPath`, or the
    /// first that plays.
    void playCollection(const TrackRows& tracks, const QString& startPath, const QString& context);
    Q_INVOKABLE void playItem(const QUuid& id, bool userInitiated);
    /// Plays an entry for the user who opened its file: the current one is never paused by that.
    void playOn(const QUuid& id);
    /// Makes an entry current that an earlier run left at a place, paused there. Its file is opened
    /// when it is to play, and that is no new play of it.
    void takeUp(std::size_t row, double seconds);
    Q_INVOKABLE void togglePlayback();
    Q_INVOKABLE void playNext(bool manual);
    Q_INVOKABLE void playPrevious();
    /// Stops and goes back to the start; the current entry stays current or does not.
    void stopPlayer(bool keepSelection);
    Q_INVOKABLE void scrub(double fraction);
    Q_INVOKABLE void seek(double fraction);
    Q_INVOKABLE void advanceRepeatMode();
    void chooseRepeatMode(PlaybackRepeatMode mode);
    Q_INVOKABLE void toggleShuffle();
    Q_INVOKABLE void stepVolume(double delta);
    /// Silences what plays, or gives it the volume from before that.
    Q_INVOKABLE void toggleMute();
    /// Wants that, once, or no longer; and tells the user.
    void setStopsAfterCurrent(bool stops);
    void showNothingToPlay();

    // Whether playNext(manual), playPrevious and togglePlayback would find something to play.
    [[nodiscard]] bool canGoNext() const;
    [[nodiscard]] bool canGoPrevious() const;
    [[nodiscard]] bool canPlay() const;
    /// Whether the current entry is a file, playing or paused.
    [[nodiscard]] bool isTrackPlaying(const QString& path) const;
    /// The file that is to follow the current one, as far as that is decided already.
    [[nodiscard]] std::optional<QString> successorPath() const;
    /// The user wants to hear an entry next: shuffle takes it before all others.
    void askFor(const QUuid& id) { m_askedForIDs.insert(id); }
    /// These ascending rows of the queue are about to be taken out. If the current one is among
    /// them, playback goes on with what follows, and a pause stays one. To be called before.
    void leave(const std::vector<RowRange>& rows);
    /// Drops the successor that was handed to the engine and plans it again: the queue changed.
    Q_INVOKABLE void replanSuccessor();
    /// Takes over the engine's own playing state, after it was changed behind the transport.
    void adoptEngineState();

  Q_SIGNALS:
    void isPlayingChanged();
    void volumeChanged();
    void isShuffleEnabledChanged();
    void repeatModeChanged();
    void stopsAfterCurrentChanged();
    /// The user has chosen what is to play.
    void chosen();
    /// The engine has another file, or none.
    void loadedFileChanged();
    /// An entry became current: select its album, take the colour of its artwork.
    void becameCurrent(const halvane::QueueItem& entry);
    /// The file of a path has begun to play: count it.
    void playStarted(const QString& path);
    /// What the desktop is told of the player is another.
    void nowPlayingChanged();
    /// Another entry plays: notify.
    void trackChanged(const halvane::QueueItem& entry);
    /// The position moved other than by playing on, within one entry. Seconds.
    void positionJumped(double seconds);

  private:
    /// Who asked for the current entry, which decides what follows when it does not play.
    enum class AskedBy {
        user,       ///< nothing: the user sees the failure on what was chosen
        collection, ///< the collection's first entry that plays
        advance,    ///< the next entry
    };
    /// The current entry's file, until the engine has opened it.
    struct Opening {
        QString path;
        bool startsOver = false; ///< the entry was current before
        double fraction = 0;     ///< where it is to begin
        bool isTakenUp = false;  ///< began in an earlier run
        bool isAsked = true;     ///< the engine opens it
    };

    [[nodiscard]] PlannedQueue plannedQueue(std::vector<RowRange> leaving = {}) const {
        return {m_queue, m_files, m_shufflePlayedIDs, m_askedForIDs, std::move(leaving)};
    }
    void proceed(const Advance& advance);
    void start(std::size_t row, AskedBy askedBy);
    void makeCurrent(std::size_t row, AskedBy askedBy);
    void passOver();
    void waitBeforeNext();
    void waitAt(std::size_t row);
    void handlePlaybackFailure(const QString& description);
    void finishPlaybackAtQueueEnd();
    void advanceUIForGaplessTrack(const QString& path);
    void attemptGaplessPreschedule();
    [[nodiscard]] bool mayFollow(std::size_t row) const;
    [[nodiscard]] std::optional<std::size_t> successorRow() const;
    [[nodiscard]] double gainOf(std::size_t row) const;
    [[nodiscard]] Company companyOf(std::size_t row) const;
    [[nodiscard]] double currentGain() const;
    void applySoundCheckForCurrentTrack();
    void download(const QString& path, const QString& title);
    [[nodiscard]] QString currentTitle() const;
    void setPlaying(bool playing);

    // What the engine reports.
    void opened();
    void foundInCloud();
    void openFailed(const QString& reason);
    void keptWaiting(int looks);
    void giveUpWaiting();
    void trackEnded();
    void interrupted(const QString& reason);
    void pauseRequested(bool pause);

    TransportEngine& m_engine;
    PlayQueue& m_queue;
    FileAvailability& m_files;
    const SoundCheck& m_soundCheck;
    StatusLine& m_status;
    ProgressClock& m_progress;
    const LanguageSetting& m_language;
    const RandomIndex m_random;
    DiskWatch m_disk;      ///< looks while the entry is to play
    int m_filesHeldUp = 0; ///< and passed over for that, since something was heard

    PlayMode m_mode;
    bool m_isPlaying = false;
    bool m_isPausedOnRequest = false; ///< for a call, say
    bool m_stopsAfterCurrent = false;
    double m_volume = 0.72;
    double m_volumeBeforeMute = 0.5;
    QSet<QUuid> m_shufflePlayedIDs;
    QSet<QUuid> m_askedForIDs;            ///< to be heard next, until they are current
    AskedBy m_askedBy = AskedBy::advance; ///< for the current entry
    std::optional<Opening> m_opening;
};

} // namespace halvane
