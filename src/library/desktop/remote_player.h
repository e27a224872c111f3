// SPDX-License-Identifier: MIT
#pragma once

#include "model/enums.h"
#include "model/queue_item.h"

#include <QString>

namespace halvane {

/// The player as the desktop's media controls see and drive it. Main thread.
class RemotePlayer {
  public:
    virtual ~RemotePlayer() = default;

    /// The queue entry marked as playing, or null. Good until control returns to the event loop.
    virtual const QueueItem* currentItem() const = 0;
    virtual bool hasLoadedFile() const = 0;
    virtual bool isPlaying() const = 0;
    /// The position heard, now.
    virtual double elapsedSeconds() const = 0;
    /// Length of the loaded file by the engine; 0 when unknown.
    virtual double fileSeconds() const = 0;
    /// Whether playNext(manual) and playPrevious would start another entry, and whether
    /// togglePlayback would find something to play.
    virtual bool canGoNext() const = 0;
    virtual bool canGoPrevious() const = 0;
    virtual bool canPlay() const = 0;
    virtual PlaybackRepeatMode repeatMode() const = 0;
    virtual bool isShuffleEnabled() const = 0;
    virtual double volume() const = 0;

    virtual void togglePlayback() = 0;
    virtual void playNext(bool manual) = 0;
    virtual void playPrevious() = 0;
    virtual void seek(double fraction) = 0;
    virtual void stopPlayer(bool keepSelection) = 0;
    virtual void setRepeatMode(PlaybackRepeatMode mode) = 0;
    virtual void setShuffleEnabled(bool enabled) = 0;
    virtual void setVolume(double volume) = 0;
    virtual void importFile(const QString& path) = 0;
};

} // namespace halvane
