// SPDX-License-Identifier: MIT
#pragma once

#include "library/desktop/remote_player.h"
#include "library/playback/play_queue.h"
#include "library/playback/transport.h"

#include <functional>

namespace halvane {

class AudioPlaybackEngine;

/// The transport as the desktop's media controls drive it. Main thread.
class RemotePlayerAdapter final : public RemotePlayer {
  public:
    /// All three outlive it.
    RemotePlayerAdapter(Transport& transport, const PlayQueue& queue,
                        const AudioPlaybackEngine& engine)
        : m_transport(transport)
        , m_queue(queue)
        , m_engine(engine) {}

    /// Takes a file that the desktop asks to have opened.
    std::function<void(const QString& path)> onImportFile;

    const QueueItem* currentItem() const override;
    bool hasLoadedFile() const override;
    bool isPlaying() const override;
    double elapsedSeconds() const override;
    double fileSeconds() const override;
    bool canGoNext() const override;
    bool canGoPrevious() const override;
    bool canPlay() const override;
    PlaybackRepeatMode repeatMode() const override;
    bool isShuffleEnabled() const override;
    double volume() const override;
    void togglePlayback() override;
    void playNext(bool manual) override;
    void playPrevious() override;
    void seek(double fraction) override;
    void stopPlayer(bool keepSelection) override;
    void setRepeatMode(PlaybackRepeatMode mode) override;
    void setShuffleEnabled(bool enabled) override;
    void setVolume(double volume) override;
    void importFile(const QString& path) override;

  private:
    Transport& m_transport;
    const PlayQueue& m_queue;
    const AudioPlaybackEngine& m_engine;
    mutable std::optional<QueueItem> m_item; ///< what currentItem last gave away
};

} // namespace halvane
