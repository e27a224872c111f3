// SPDX-License-Identifier: MIT
#include "platform/mpris/mpris_state.h"

#include <QDBusObjectPath>
#include <QUrl>

#include <cmath>

namespace halvane {

using namespace Qt::StringLiterals;

qint64 microseconds(double seconds) {
    return std::isfinite(seconds) ? static_cast<qint64>(std::llround(seconds * 1e6)) : 0;
}

QString mprisTrackId(const std::optional<NowPlayingInfo>& info) {
    return info ? u"/org/halvane/Halvane/track/"_s + info->entry.toString(QUuid::Id128)
                : u"/org/mpris/MediaPlayer2/TrackList/NoTrack"_s;
}

QVariantMap mprisMetadata(const std::optional<NowPlayingInfo>& info) {
    if (!info)
        return {};
    QVariantMap map{
        {u"mpris:trackid"_s, QVariant::fromValue(QDBusObjectPath(mprisTrackId(info)))},
        {u"xesam:title"_s, info->title},
        {u"xesam:artist"_s, QStringList{info->artist}},
        {u"xesam:album"_s, info->albumTitle},
    };
    if (!info->albumArtist.isEmpty())
        map.insert(u"xesam:albumArtist"_s, QStringList{info->albumArtist});
    if (info->discNumber > 0)
        map.insert(u"xesam:discNumber"_s, info->discNumber);
    if (info->trackNumber > 0)
        map.insert(u"xesam:trackNumber"_s, info->trackNumber);
    if (!info->genre.isEmpty())
        map.insert(u"xesam:genre"_s, QStringList{info->genre});
    if (info->durationSeconds)
        map.insert(u"mpris:length"_s, microseconds(*info->durationSeconds));
    if (info->artworkPath)
        map.insert(u"mpris:artUrl"_s,
                   QUrl::fromLocalFile(*info->artworkPath).toString(QUrl::FullyEncoded));
    if (info->filePath)
        map.insert(u"xesam:url"_s,
                   QUrl::fromLocalFile(*info->filePath).toString(QUrl::FullyEncoded));
    return map;
}

QString mprisPlaybackStatus(MediaPlaybackState state) {
    switch (state) {
    case MediaPlaybackState::playing:
        return u"Playing"_s;
    case MediaPlaybackState::paused:
        return u"Paused"_s;
    case MediaPlaybackState::stopped:
        break;
    }
    return u"Stopped"_s;
}

QString mprisLoopStatus(MediaLoop loop) {
    switch (loop) {
    case MediaLoop::track:
        return u"Track"_s;
    case MediaLoop::playlist:
        return u"Playlist"_s;
    case MediaLoop::none:
        break;
    }
    return u"None"_s;
}

std::optional<MediaLoop> loopOfMprisStatus(const QString& status) {
    for (const auto loop : {MediaLoop::none, MediaLoop::track, MediaLoop::playlist}) {
        if (status == mprisLoopStatus(loop))
            return loop;
    }
    return {};
}

QVariantMap mprisPlayerProperties(const MprisState& state) {
    const auto& can = state.capabilities;
    return {
        {u"PlaybackStatus"_s, mprisPlaybackStatus(state.playback)},
        {u"LoopStatus"_s, mprisLoopStatus(state.loop)},
        {u"Shuffle"_s, state.shuffle},
        {u"Metadata"_s, mprisMetadata(state.info)},
        {u"Volume"_s, state.volume},
        {u"CanGoNext"_s, can.canGoNext},
        {u"CanGoPrevious"_s, can.canGoPrevious},
        {u"CanPlay"_s, can.canPlay},
        {u"CanPause"_s, can.canPause},
        {u"CanSeek"_s, can.canSeek},
    };
}

QStringList mprisMimeTypes() {
    return {u"audio/mpeg"_s,       u"audio/mp4"_s,          u"audio/x-m4b"_s,
            u"audio/aac"_s,        u"audio/x-wav"_s,        u"audio/vnd.wave"_s,
            u"audio/x-aiff"_s,     u"audio/x-aifc"_s,       u"audio/flac"_s,
            u"audio/x-flac"_s,     u"audio/x-caf"_s,        u"audio/x-alac"_s,
            u"audio/ogg"_s,        u"audio/x-vorbis+ogg"_s, u"audio/x-opus+ogg"_s,
            u"audio/x-flac+ogg"_s, u"audio/x-speex+ogg"_s,  u"audio/opus"_s,
            u"audio/x-wavpack"_s,  u"audio/x-ape"_s,        u"audio/x-musepack"_s,
            u"audio/x-tta"_s,      u"audio/x-dsf"_s,        u"audio/x-dff"_s,
            u"audio/x-ms-wma"_s};
}

} // namespace halvane
