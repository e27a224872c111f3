// SPDX-License-Identifier: MIT
#pragma once

#include "audio/graph/transport_engine.h"
#include "library/playback/play_queue.h"
#include "library/playback/progress_clock.h"
#include "library/playback/queue_planner.h"
#include "library/status_line.h"
#include "library/tidying/file_availability.h"

#include <functional>

namespace halvane {

/// Whom the transport works with. All of it outlives the transport; the functions are called on the
/// main thread.
struct TransportCollaborators {
    TransportEngine& engine;
    PlayQueue& queue;
    FileAvailability& files;
    StatusLine& status;
    ProgressClock& progress;
    Clock& clock;
    RandomIndex random;
    std::function<ResolvedLanguage()> language;
    /// The Sound Check gain of a file in dB; none when it is off or the file is not measured.
    std::function<std::optional<double>(const QString& path)> soundCheckGain;
};

/// The number that RandomIndex asks for, from the system's generator.
RandomIndex systemRandomIndex();

/// Plays the queue: starts, pauses and seeks its entries in the engine, advances when a track ends
/// and skips what does not play. Which entry comes next is the planner's. Main thread.
class Transport : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool isPlaying READ isPlaying NOTIFY isPlayingChanged)
    /// Playing or paused: there is a position to move.
    Q_PROPERTY(bool hasLoadedFile READ hasLoadedFile NOTIFY loadedFileChanged)
    Q_PROPERTY(double volume READ volume WRITE setVolume NOTIFY volumeChanged)
    Q_PROPERTY(bool isShuffleEnabled READ isShuffleEnabled NOTIFY isShuffleEnabledChanged)
    Q_PROPERTY(halvane::PlaybackRepeatMode repeatMode READ repeatMode NOTIFY repeatModeChanged)

  public:
    explicit Transport(TransportCollaborators with, QObject* parent = nullptr);
    ~Transport() override;

    [[nodiscard]] bool isPlaying() const { return m_isPlaying; }
    [[nodiscard]] double volume() const { return m_volume; }
    [[nodiscard]] bool isShuffleEnabled() const { return m_mode.shuffle; }
    [[nodiscard]] PlaybackRepeatMode repeatMode() const { return m_mode.repeat; }
    [[nodiscard]] bool hasLoadedFile() const { return m_with.engine.hasFile(); }

    /// 0...1, clamped; nonsense is silence.
    void setVolume(double volume);
    // The restored settings; the user's changes come through the operations below.
    void setShuffleEnabled(bool enabled);
    void setRepeatMode(PlaybackRepeatMode mode);

    /// Makes a queue of the tracks that have a file and starts the one of `startPath`, or the
    /// first.
    void playCollection(const TrackRows& tracks, const QString& startPath, const QString& context);
    Q_INVOKABLE void playItem(const QUuid& id, bool userInitiated);
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
    void showNothingToPlay();

    // Whether playNext(manual), playPrevious and togglePlayback would find something to play.
    [[nodiscard]] bool canGoNext() const;
    [[nodiscard]] bool canGoPrevious() const;
    [[nodiscard]] bool canPlay() const;
    /// Whether the current entry is a file, playing or paused.
    [[nodiscard]] bool isTrackPlaying(const QString& path) const;
    /// Drops the successor that was handed to the engine and plans it again: the queue changed.
    Q_INVOKABLE void replanSuccessor();
    /// Hands the engine the next entry where it may follow without a gap.
    void attemptGaplessPreschedule();
    /// Takes over the engine's own playing state, after it was changed behind the transport.
    void adoptEngineState();

    // What the engine reports.
    void trackEnded();
    void interrupted(const QString& reason);
    /// Pauses for a call, say, and goes on after it, unless the user did something meanwhile.
    void pauseRequested(bool pause);

  Q_SIGNALS:
    void isPlayingChanged();
    void volumeChanged();
    void isShuffleEnabledChanged();
    void repeatModeChanged();
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
    enum class Outcome { settled, skip };
    class View;

    void proceed(Advance advance);
    Outcome start(std::size_t row, bool userInitiated);
    std::optional<QString> startPlayer(const QString& path);
    Outcome handlePlaybackFailure(const QString& description);
    void finishPlaybackAtQueueEnd();
    void advanceUIForGaplessTrack(const QString& path);
    void makeCurrent(std::size_t row, bool userInitiated);
    void applySoundCheck(const QString& path);
    [[nodiscard]] double gainOrZero(const QString& path) const;
    [[nodiscard]] QString currentTitle() const;
    void setPlaying(bool playing);

    TransportCollaborators m_with;
    PlayMode m_mode;
    bool m_isPlaying = false;
    bool m_isPausedOnRequest = false;
    double m_volume = 0.72;
    QSet<QUuid> m_shufflePlayedIDs;
    bool m_currentPlaybackIsUserInitiated = false;
    std::unique_ptr<Timer> m_skipping; ///< a long run of skips goes on in the next turn
};

} // namespace halvane
