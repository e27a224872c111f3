// SPDX-License-Identifier: MIT
#pragma once

#include "platform/mpris/media_controls.h"

#include <memory>

class QString;

namespace halvane {

/// The desktop's media controls by MPRIS 2.2: a player under "org.mpris.MediaPlayer2.halvane" on
/// the session bus (with a suffix if another program holds that name). Changes that are published
/// in one turn of the event loop are signalled together, and only those properties that differ from
/// what was signalled last. Main thread. On a connection that is not there nothing happens.
class MprisControls final : public MediaControls {
  public:
    /// Takes the name of a D-Bus connection that outlives this object.
    explicit MprisControls(const QString& connection);
    ~MprisControls() override;

    void setHandlers(MediaCommandHandlers handlers) override;
    void publish(const std::optional<NowPlayingInfo>& info, MediaPlaybackState state) override;
    void publishCapabilities(const MediaCapabilities& capabilities) override;
    void publishModes(MediaLoop loop, bool shuffle, double volume) override;
    void seeked(double seconds) override;
    void setWindowHandlers(WindowCommandHandlers handlers) override;
    void publishFullScreen(bool fullScreen) override;

  private:
    class Player;
    std::unique_ptr<Player> m_player;
};

} // namespace halvane
