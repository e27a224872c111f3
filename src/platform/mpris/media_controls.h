// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QUuid>

#include <functional>
#include <optional>

namespace halvane {

enum class MediaPlaybackState { stopped, playing, paused };
enum class MediaLoop { none, track, playlist };

/// What is playing, as the desktop's media controls show it.
struct NowPlayingInfo {
    QUuid entry; ///< the queue entry, unique in the queue
    QString title;
    QString artist;
    QString albumTitle;
    QString albumArtist; ///< empty: none
    QString genre;
    int discNumber = 0;  ///< 0: not known
    int trackNumber = 0; ///< 0: not known
    double elapsedSeconds = 0;
    double playbackRate = 0; ///< 1 while playing, 0 while paused
    std::optional<double> durationSeconds;
    std::optional<QString> artworkPath; ///< a picture file that stays where it is
    std::optional<QString> filePath;

    bool operator==(const NowPlayingInfo&) const = default;
};

/// What the controls may offer at this moment.
struct MediaCapabilities {
    bool canGoNext = false;
    bool canGoPrevious = false;
    bool canPlay = false;
    bool canPause = false;
    bool canSeek = false;

    bool operator==(const MediaCapabilities&) const = default;
};

enum class CommandResult { success, commandFailed };

/// What the desktop asks of the player. Every handler is called on the main thread.
struct MediaCommandHandlers {
    std::function<CommandResult()> play;
    std::function<CommandResult()> pause;
    std::function<CommandResult()> togglePlayPause;
    std::function<CommandResult()> stop;
    std::function<CommandResult()> nextTrack;
    std::function<CommandResult()> previousTrack;
    std::function<CommandResult(double seconds)> changePlaybackPosition;
    std::function<void(const QString& path)> openFile;
    std::function<void(MediaLoop)> setLoop;
    std::function<void(bool)> setShuffle;
    std::function<void(double)> setVolume;  ///< 0...1
    std::function<double()> elapsedSeconds; ///< the position now
};

/// What the desktop asks of the program's windows. Called on the main thread.
struct WindowCommandHandlers {
    std::function<void()> raise;
    std::function<void()> quit;
};

/// The desktop's media controls. Does nothing where no service is behind it. Main thread.
class MediaControls {
  public:
    virtual ~MediaControls() = default;
    /// Called once, before anything is published.
    virtual void setHandlers(MediaCommandHandlers handlers) = 0;
    /// Publishes what is playing; none clears it, with the state stopped.
    virtual void publish(const std::optional<NowPlayingInfo>& info, MediaPlaybackState state) = 0;
    virtual void publishCapabilities(const MediaCapabilities& capabilities) = 0;
    virtual void publishModes(MediaLoop loop, bool shuffle, double volume) = 0;
    /// The position jumped to this place instead of moving on with the music.
    virtual void seeked(double seconds) = 0;

    virtual void setWindowHandlers(WindowCommandHandlers handlers) = 0;
};

} // namespace halvane
