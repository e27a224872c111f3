// SPDX-License-Identifier: MIT
#pragma once

#include "libav/byte_source.h"

#include <QByteArrayView>

#include <cstdint>
#include <optional>

namespace halvane {

// Lengths and delays as files state them, where libavformat does not pass them on whole. Every
// function takes any bytes and gives nothing where the figures are missing or make no sense.
// Pure, any thread.

/// Which part of a raw timeline is the music.
struct StreamExtent {
    std::int64_t delay = 0;  ///< frames that the encoder put in front
    std::int64_t length = 0; ///< frames of music
};

/// A part of a track in ticks of its own clock.
struct TrackExtent {
    std::int64_t delay = 0;
    std::int64_t length = 0;
    std::int64_t ticksPerSecond = 0;
    std::int64_t whole = 0; ///< the track with all that surrounds the part, where that is known
};

/// The part of an MP4 file's track that its edit list presents (ISO/IEC 14496-12: mdhd, elst).
std::optional<TrackExtent> mp4Extent(const ByteSource& file, std::uint32_t trackId);
/// The same of the first track of sound.
std::optional<TrackExtent> mp4SoundExtent(const ByteSource& file);

/// What a CAF file's packet table states (chunk "pakt"), in frames.
struct CafPacketTable {
    std::int64_t validFrames = 0;
    std::int64_t primingFrames = 0;
};
std::optional<CafPacketTable> cafPacketTable(const ByteSource& file);
/// The music of a CAF file with a packet table, in frames. Some writers state whole packets; where
/// the last packet of Apple Lossless tells how full it is, it has the last word.
std::optional<std::int64_t> cafMusicFrames(const ByteSource& file);

/// What encoders of raw AAC streams put in front by convention; the stream itself does not say.
inline constexpr std::int64_t adtsDelay = 1024;

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

/// What a layer III decoder adds in front of the sound, besides the encoder's delay.
inline constexpr std::int64_t mp3DecoderDelay = 528 + 1;
/// The music among the `raw` frames that a decoder gives of an MP3 stream with these figures.
StreamExtent mp3Extent(const Mp3Figures& figures, std::int64_t raw);

/// The music in what a decoder gives of a Musepack stream whose header begins at `start` (versions
/// 7 and 8). The decoder's filters put some frames in front.
std::optional<StreamExtent> musepackExtent(const ByteSource& file, qint64 start);

/// How many bits a channel of a DSF file has, by the header at its beginning.
std::optional<std::int64_t> dsfBits(const ByteSource& file);

/// How many bytes of sound a DSDIFF file has, which is not compressed.
std::optional<std::int64_t> dsdiffSoundBytes(const ByteSource& file);

/// How long the sound of an ASF file is, in units of 100 nanoseconds (its file properties: the time
/// of playing less what is loaded in front). None of a broadcast, which does not know.
std::optional<std::int64_t> asfTime(const ByteSource& file);
inline constexpr std::int64_t asfTicksPerSecond = 10'000'000;

/// From the text of an "iTunSMPB" tag: frames in front and frames of music.
std::optional<TrackExtent> gaplessTag(QByteArrayView text);

} // namespace halvane
