// SPDX-License-Identifier: MIT
// What MPRIS says of the player, as values: https://specifications.freedesktop.org/mpris-spec/2.2/
#pragma once

#include "platform/mpris/media_controls.h"

#include <QStringList>
#include <QVariantMap>

#include <optional>

namespace halvane {

/// What was published last.
struct MprisState {
    std::optional<NowPlayingInfo> info;
    MediaPlaybackState playback = MediaPlaybackState::stopped;
    MediaCapabilities capabilities;
    MediaLoop loop = MediaLoop::none;
    bool shuffle = false;
    double volume = 0;
};

/// Microseconds, as the bus counts time.
qint64 microseconds(double seconds);

/// The object path of a queue entry; without one, the path that stands for no track.
QString mprisTrackId(const std::optional<NowPlayingInfo>& info);

/// Metadata of the playing entry; empty without one.
QVariantMap mprisMetadata(const std::optional<NowPlayingInfo>& info);

QString mprisPlaybackStatus(MediaPlaybackState state);
QString mprisLoopStatus(MediaLoop loop);
/// None for a text that is no loop status.
std::optional<MediaLoop> loopOfMprisStatus(const QString& status);

/// Those properties of the player interface that are signalled when they change.
QVariantMap mprisPlayerProperties(const MprisState& state);

QStringList mprisMimeTypes();

} // namespace halvane
