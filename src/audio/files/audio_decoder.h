// SPDX-License-Identifier: MIT
#pragma once

#include "audio/files/libav.h"
#include "audio/files/sample_convert.h"
#include "base/result.h"
#include "platform/sound/sound_output.h"

#include <cstdint>
#include <optional>

namespace halvane {

/// One file's sound, block by block as the decoder gives it, encoder delay and padding included.
/// Positions are frames on that raw timeline, on which the first packet begins at 0. One thread at
/// a time.
class AudioDecoder {
  public:
    /// A part of a file, in bytes.
    struct Part {
        qint64 begin = 0;
        qint64 end = 0;
    };
    /// Opens a file, or the part of it that is one, and decodes its first block.
    Result<> open(const QString& path, const std::optional<Part>& part = {});

    [[nodiscard]] const StreamFormat& format() const { return m_format; }
    [[nodiscard]] const AVFormatContext& container() const { return *m_container; }
    [[nodiscard]] const AVStream& stream() const { return *m_stream; }
    /// Where the first packet lies in the file, in bytes.
    [[nodiscard]] std::int64_t firstPacketPosition() const { return m_firstPacketPosition; }

    /// The present block: [blockStart, blockEnd), empty where there is none.
    [[nodiscard]] std::int64_t blockStart() const { return m_blockStart; }
    [[nodiscard]] std::int64_t blockEnd() const { return m_blockStart + m_frame->nb_samples; }
    /// Writes frames of the present block, from raw frame `from` on, as interleaved floats.
    void copy(std::int64_t from, std::size_t frames, float* out) const noexcept;

    /// Decodes the next block; damaged ones are passed over. False at the end of what can be read.
    bool next();
    /// Goes to a block that holds `frame` or begins before it, far enough in front for every sample
    /// from `frame` on to come out as in one pass from the start. False when nothing is there.
    bool seek(std::int64_t frame);
    /// The end of the last packet, found without decoding. May leave the decoder at the end,
    /// without a block: seek next.
    std::int64_t countFrames();
    /// The end of the last block, found by decoding from `near` on; none when nothing is there to
    /// be decoded. Leaves the decoder at the end.
    std::optional<std::int64_t> decodedEnd(std::int64_t near);
    /// What stopped reading, where that was not the end of the file.
    [[nodiscard]] const std::optional<QString>& readError() const { return m_readError; }

    /// A time of the stream as a raw frame, rounded to the nearest.
    [[nodiscard]] std::int64_t toFrames(std::int64_t streamTime) const;

  private:
    Result<> openContainer(const QString& path, const std::optional<Part>& part);
    Result<> openDecoder(const AVCodec* codec);
    Result<> decodeFirstBlock();
    bool readPacket();
    [[nodiscard]] bool isUsable() const;
    [[nodiscard]] bool isLeadIn() const;
    void place();
    bool seekBefore(std::int64_t frame);
    bool seekPage(std::int64_t frame);
    [[nodiscard]] std::optional<qint64> blockBefore(std::int64_t frame) const;
    std::optional<std::int64_t> indexFrames();

    QString m_path;
    std::optional<Part> m_part;
    libav::Owned<AVFormatContext> m_container;
    AVStream* m_stream = nullptr; ///< of m_container
    libav::Owned<AVCodecContext> m_codec;
    libav::Owned<AVPacket> m_packet;
    libav::Owned<AVFrame> m_frame; ///< the present block
    StreamFormat m_format;
    SampleBlock m_layout; ///< of the present block; its planes are m_frame's
    std::int64_t m_firstPacketPosition = 0;
    std::int64_t m_origin = 0;         ///< stream time of the first packet
    std::int64_t m_packetDuration = 0; ///< of the first packet, in stream time
    bool m_isIndexed = false;          ///< the container's index is as complete as it gets
    std::int64_t m_blockStart = 0;
    std::optional<std::int64_t> m_expectedStart; ///< of the next block; none after a seek
    bool m_ignoresTimes = false; ///< the container's; blocks are placed one behind the other
    std::optional<QString> m_readError;
};

} // namespace halvane
