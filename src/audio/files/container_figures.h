// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QIODevice>

#include <cstdint>
#include <optional>

namespace halvane {

// Lengths and delays as files state them, where libavformat does not pass them on whole. Every
// function takes any bytes and gives nothing where the figures are missing or make no sense.
// Pure, any thread.

/// A part of a track in ticks of its own clock.
struct TrackExtent {
    std::int64_t delay = 0;
    std::int64_t length = 0;
    std::int64_t ticksPerSecond = 0;
};

/// The part of an MP4 file's track that its edit list presents (ISO/IEC 14496-12: mdhd, elst).
std::optional<TrackExtent> mp4Extent(QIODevice& file, std::uint32_t trackId);

/// What a CAF file's packet table states (chunk "pakt"), in frames.
struct CafPacketTable {
    std::int64_t validFrames = 0;
    std::int64_t primingFrames = 0;
};
std::optional<CafPacketTable> cafPacketTable(QIODevice& file);

/// What the encoder of an MP3 stream states.
struct Mp3Figures {
    std::int64_t blocks = 0;  ///< of sound in the stream; 0: not stated
    std::int64_t delay = 0;   ///< frames that it put before the music
    std::int64_t padding = 0; ///< and after it
};
/// From the information frame in front of an MP3 stream (Xing or Info, with the encoder's part
/// behind it). `bytes` end where the first frame of sound begins. The decoder's own delay is not in
/// these figures.
std::optional<Mp3Figures> mp3Figures(QByteArrayView bytes);

/// From the text of an "iTunSMPB" tag: frames in front and frames of music.
std::optional<TrackExtent> gaplessTag(QByteArrayView text);

} // namespace halvane
