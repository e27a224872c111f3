// SPDX-License-Identifier: MIT
// How a decoder goes to a place.
#include "audio/files/audio_decoder.h"
#include "libav/flac_blocks.h"
#include "libav/frame_walk.h"
#include "libav/ogg_links.h"

#include <QFile>
#include <QtEndian>

#include <algorithm>
#include <string_view>
#include <vector>

namespace halvane {

using namespace libav;

namespace {

/// Packets decoded and dropped in front of a seek's target. An MP3 frame may draw on about ten
/// frames before it (the bit reservoir at low bit rates) and its filter bank on one more; AAC
/// overlaps by one frame, and its bandwidth extension settles within a few.
constexpr int prerollPackets = 16;

bool drawsOnEarlierPackets(const AVCodecContext& codec) {
    const AVCodecDescriptor* description = avcodec_descriptor_get(codec.codec_id);
    return description && !(description->props & AV_CODEC_PROP_LOSSLESS);
}

/// Whether a decoder keeps some of what it has heard when it is flushed.
bool remembersAcrossFlush(AVCodecID codec) {
    return codec == AV_CODEC_ID_MUSEPACK7 || codec == AV_CODEC_ID_MUSEPACK8 ||
           codec == AV_CODEC_ID_SPEEX || codec == AV_CODEC_ID_WMAV1 || codec == AV_CODEC_ID_WMAV2;
}

/// Which chain of frames a container is, by libavformat's name of it.
std::optional<FrameStream> frameStream(std::string_view container) {
    if (container == "mp3")
        return FrameStream::mpegLayer3;
    if (container == "aac")
        return FrameStream::adts;
    if (container == "mpc8")
        return FrameStream::musepack8;
    return std::nullopt;
}

/// Where a frame begins whose contents libavformat found at a position. In front of those stand two
/// letters and up to eight bytes of size.
std::int64_t frameBegin(QFile& file, FrameStream kind, std::int64_t contents) {
    constexpr std::int64_t longestHead = 10;
    if (kind != FrameStream::musepack8 || contents < longestHead ||
        !file.seek(contents - longestHead))
        return contents;
    const qsizetype at = file.read(longestHead).lastIndexOf("AP");
    return at < 0 ? contents : contents - longestHead + at;
}

} // namespace

bool AudioDecoder::seek(std::int64_t frame) {
    indexFrames();
    const int packetFrames = std::max(m_codec->frame_size, 1024);
    std::int64_t lead =
        drawsOnEarlierPackets(*m_codec) ? std::int64_t{prerollPackets} * packetFrames : 0;
    for (;;) {
        const std::int64_t from = std::max<std::int64_t>(frame - lead, 0);
        // Some containers land late where their index is sparse: ask for an earlier place then.
        if (seekBefore(from) && (m_blockStart <= from || from == 0))
            return true;
        if (from == 0)
            return false;
        lead = lead * 4 + m_format.sampleRate;
    }
}

bool AudioDecoder::seekBefore(std::int64_t frame) {
    const std::int64_t time = m_origin + av_rescale_q_rnd(frame, {1, m_format.sampleRate},
                                                          m_stream->time_base, AV_ROUND_DOWN);
    if (!remembersAcrossFlush(m_codec->codec_id))
        avcodec_flush_buffers(m_codec.get());
    else if (!openDecoder(m_codec->codec))
        return false;
    m_expectedStart.reset();
    const std::string_view container(m_container->iformat->name);
    if (container == "ogg")
        return seekPage(frame);
    if (const auto block = container == "flac" ? blockBefore(frame) : std::nullopt)
        return av_seek_frame(m_container.get(), -1, *block, AVSEEK_FLAG_BYTE) >= 0 && next();
    return av_seek_frame(m_container.get(), m_stream->index, time, AVSEEK_FLAG_BACKWARD) >= 0 &&
           next();
}

/// Where in a FLAC stream to begin to decode. libavformat does not use a stream's own table for a
/// seek to the frame, and its search reads some dozens of portions.
std::optional<qint64> AudioDecoder::blockBefore(std::int64_t frame) const {
    constexpr int infoSize = 34;
    const AVCodecParameters& stream = *m_stream->codecpar;
    QFile file(m_path);
    if (m_stream->duration <= 0 || stream.extradata_size < infoSize ||
        !file.open(QIODevice::ReadOnly | QIODevice::Unbuffered))
        return std::nullopt;
    const std::int64_t target = m_origin + frame;
    FlacPlace low{m_firstPacketPosition, m_origin};
    FlacPlace high{file.size(), m_origin + m_stream->duration};
    // The table's places, and those that have been met.
    const auto entry = [&](int flags) {
        return avformat_index_get_entry_from_timestamp(m_stream, target, flags);
    };
    if (const AVIndexEntry* before = entry(AVSEEK_FLAG_BACKWARD);
        before && before->timestamp > low.frame)
        low = {before->pos, before->timestamp};
    if (const AVIndexEntry* behind = entry(0);
        behind && target < behind->timestamp && behind->timestamp < high.frame)
        high = {behind->pos, behind->timestamp};
    const int blockSize = qFromBigEndian<quint16>(stream.extradata);
    const auto found = flacBlockBefore(byteSource(file), target, blockSize, low, high);
    return found ? std::optional(found->position) : std::nullopt;
}

/// Goes to a page of an Ogg stream. libavformat looks for pages by the times of packets that it has
/// met inside of pages, and then is some packets late.
bool AudioDecoder::seekPage(std::int64_t frame) {
    QFile file(m_path);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Unbuffered))
        return false;
    const Part part = m_part.value_or(Part{0, file.size()});
    const ByteSource pages{part.end - part.begin, [&](qint64 offset, qint64 length) {
                               return byteSource(file).read(part.begin + offset, length);
                           }};
    const auto place = oggPageBefore(pages, m_firstPacketPosition, m_origin + frame);
    const AVCodecID codec = m_codec->codec_id;
    // These say nothing of their times between the ends of pages, and have as many frames in each
    // packet.
    m_ignoresTimes = codec == AV_CODEC_ID_FLAC || codec == AV_CODEC_ID_SPEEX;
    if (!place)
        m_expectedStart = 0;
    else if (m_ignoresTimes)
        m_expectedStart = toFrames(place->granule) - place->wholePackets * m_packetDuration;
    return av_seek_frame(m_container.get(), -1, place ? place->begin : m_firstPacketPosition,
                         AVSEEK_FLAG_BYTE) >= 0 &&
           next();
}

/// Tells libavformat where the frames of a stream without a table are, which it would otherwise
/// find out by parsing the stream up to each seek's target. Gives the number of frames on the raw
/// timeline when it has walked them.
std::optional<std::int64_t> AudioDecoder::indexFrames() {
    const auto kind = frameStream(m_container->iformat->name);
    if (m_isIndexed || m_packetDuration <= 0 || !kind)
        return std::nullopt;
    // Packets between two entries. Musepack's are long.
    const std::int64_t spacing = kind == FrameStream::musepack8 ? 1 : 8;
    m_isIndexed = true;
    QFile file(m_path);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Unbuffered))
        return std::nullopt;
    std::vector<std::int64_t> positions; // of every eighth packet and the last
    std::int64_t last = 0;
    const auto count =
        walkFrames(byteSource(file), *kind, frameBegin(file, *kind, m_firstPacketPosition),
                   [&](std::int64_t number, std::int64_t position) {
                       if (number % spacing == 0)
                           positions.push_back(position);
                       last = position;
                   });
    if (!count)
        return std::nullopt;
    const auto add = [&](std::int64_t number, std::int64_t position) {
        av_add_index_entry(m_stream, position, m_origin + number * m_packetDuration, 0, 0,
                           AVINDEX_KEYFRAME);
    };
    for (std::size_t i = 0; i < positions.size(); ++i)
        add(std::int64_t(i) * spacing, positions[i]);
    add(*count - 1, last);
    return toFrames(m_origin + *count * m_packetDuration);
}

} // namespace halvane
