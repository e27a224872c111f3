// SPDX-License-Identifier: MIT
#pragma once

#include "platform/mpris/media_controls.h"

#include <functional>
#include <memory>

class QString;

namespace halvane {

/// The desktop's media controls by MPRIS 2.2: a player under "org.mpris.MediaPlayer2.halvane" on
/// the session bus (with a suffix if another program holds that name). Changes that are published
/// in one turn of the event loop are signalled together. Only properties that differ from the last
/// signal are in it. Does nothing without a connection. Main thread.
class MprisControls final : public MediaControls {
  public:
    /// Whether a file is there. It is asked on a thread of its own and may wait for a disk.
    using Look = std::function<bool(const QString& path)>;

    /// Takes the name of a D-Bus connection that outlives this object.
    explicit MprisControls(const QString& connection);
    MprisControls(const QString& connection, Look exists);
    ~MprisControls() override;

    void setHandlers(MediaCommandHandlers handlers) override;
    void publish(const std::optional<NowPlayingInfo>& info, MediaPlaybackState state) override;
    void publishCapabilities(const MediaCapabilities& capabilities) override;
    void publishModes(MediaLoop loop, bool shuffle, double volume) override;
    void seeked(double seconds) override;
    void setWindowHandlers(WindowCommandHandlers handlers) override;

  private:
    class Player;
    std::unique_ptr<Player> m_player;
};

} // namespace halvane
