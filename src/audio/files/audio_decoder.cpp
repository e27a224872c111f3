// SPDX-License-Identifier: MIT
#include "audio/files/audio_decoder.h"

#include "audio/files/container_signature.h"

#include <QFile>
#include <QtEndian>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <sys/stat.h>

namespace halvane {

using namespace libav;
using namespace Qt::StringLiterals;

namespace {

constexpr int maxChannels = 8;
constexpr int maxSampleRate = 384'000; ///< what the sound server takes

/// The containers that the playable formats come in. Nothing else is opened, whatever a file holds:
/// some of libavformat's other readers follow references to further files or to the network.
constexpr const char* containers =
    "mp3,mov,aac,loas,wav,w64,aiff,flac,caf,ogg,wv,ape,mpc,mpc8,tta,dsf,iff,asf";

Failure cannotOpen(int error) {
    return {QString::fromLocal8Bit(std::strerror(error))};
}

/// What the file system has to say before libav looks: a pipe would block, a folder reads as a
/// broken file.
Result<> checkFile(const QByteArray& name) {
    struct stat info {};
    if (::stat(name.constData(), &info) != 0)
        return cannotOpen(errno);
    if (S_ISDIR(info.st_mode))
        return Failure{u"It is a folder"_s};
    if (!S_ISREG(info.st_mode))
        return Failure{u"It is not a regular file"_s};
    if (info.st_size == 0)
        return Failure{u"The file is empty"_s};
    return {};
}

/// Whether an error of opening comes from what the file holds: not what a container of its kind
/// must hold, too short for it, or none of those that are allowed.
bool isAboutContent(int error) {
    return error == AVERROR_INVALIDDATA || error == AVERROR_EOF || error == AVERROR(EIO) ||
           error == AVERROR(EINVAL);
}

std::optional<SampleKind> sampleKind(AVSampleFormat format) {
    switch (av_get_packed_sample_fmt(format)) {
    case AV_SAMPLE_FMT_U8:
        return SampleKind::u8;
    case AV_SAMPLE_FMT_S16:
        return SampleKind::s16;
    case AV_SAMPLE_FMT_S32:
        return SampleKind::s32;
    case AV_SAMPLE_FMT_S64:
        return SampleKind::s64;
    case AV_SAMPLE_FMT_FLT:
        return SampleKind::f32;
    case AV_SAMPLE_FMT_DBL:
        return SampleKind::f64;
    default:
        return std::nullopt;
    }
}

/// The speakers of a layout; those usual for the number of channels where the file names none, so
/// that files with and without the figure can follow each other.
std::uint64_t speakerMask(const AVChannelLayout& layout) {
    if (layout.order == AV_CHANNEL_ORDER_NATIVE)
        return layout.u.mask;
    AVChannelLayout usual{};
    av_channel_layout_default(&usual, layout.nb_channels);
    return usual.order == AV_CHANNEL_ORDER_NATIVE ? usual.u.mask : 0;
}

/// The decoder to use in place of the one that libavcodec offers first. Its own for Speex gives
/// blocks of twice the length where there are two channels (version 7.1).
const AVCodec* preferredTo(const AVCodec* codec) {
    const AVCodec* other =
        codec->id == AV_CODEC_ID_SPEEX ? avcodec_find_decoder_by_name("libspeex") : nullptr;
    return other ? other : codec;
}

bool isEncrypted(const AVStream& stream, const AVPacket& packet) {
    const auto tag = stream.codecpar->codec_tag;
    return tag == MKTAG('d', 'r', 'm', 's') || tag == MKTAG('e', 'n', 'c', 'a') ||
           tag == MKTAG('a', 'a', 'v', 'd') ||
           av_packet_get_side_data(&packet, AV_PKT_DATA_ENCRYPTION_INFO, nullptr);
}

/// The address of a file, or of a part of it, for libavformat.
QByteArray addressOf(const QByteArray& name, const std::optional<AudioDecoder::Part>& part) {
    if (!part)
        return "file:" + name;
    return "subfile,,start," + QByteArray::number(part->begin) + ",end," +
           QByteArray::number(part->end) + ",,:file:" + name;
}

/// The place of a block whose stated place may be off by up to `grain` frames. The containers with
/// so coarse a clock hold codecs whose blocks are multiples of 512 frames.
std::int64_t onGrid(std::int64_t stated, std::int64_t grain) {
    constexpr std::int64_t grid = 512;
    const std::int64_t nearest = (stated + grid / 2) / grid * grid;
    const bool isCoarse = grain > 1 && grain < grid / 2;
    return isCoarse && std::abs(nearest - stated) <= grain ? nearest : stated;
}

/// A container of this format, of any if it is null. `context` stays null on failure.
int openAs(const AVInputFormat* format, const QByteArray& address, AVFormatContext*& context) {
    AVDictionary* options = nullptr;
    av_dict_set(&options, "format_whitelist", containers, 0);
    av_dict_set(&options, "protocol_whitelist", "file,subfile", 0);
    // Edit lists are read apart: here they would drop packets that hold the last few frames.
    av_dict_set(&options, "ignore_editlist", "1", 0);
    const int opened = avformat_open_input(&context, address.constData(), format, &options);
    av_dict_free(&options);
    return opened;
}

} // namespace

Result<> AudioDecoder::open(const QString& path, const std::optional<Part>& part) {
    m_path = path;
    m_part = part;
    if (auto loaded = libav::load(); !loaded)
        return loaded;
    if (auto opened = openContainer(path, part); !opened)
        return opened;

    const AVCodec* codec = nullptr;
    const int index = av_find_best_stream(m_container.get(), AVMEDIA_TYPE_AUDIO, -1, -1, &codec, 0);
    if (index == AVERROR_DECODER_NOT_FOUND)
        return Failure{u"There is no decoder for its sound"_s};
    if (index < 0)
        return Failure{u"There is no sound in the file"_s};
    m_stream = m_container->streams[index];
    for (unsigned i = 0; i < m_container->nb_streams; ++i)
        m_container->streams[i]->discard =
            static_cast<int>(i) == index ? AVDISCARD_DEFAULT : AVDISCARD_ALL;

    if (auto opened = openDecoder(preferredTo(codec)); !opened)
        return opened;
    return decodeFirstBlock();
}

Result<> AudioDecoder::openContainer(const QString& path, const std::optional<Part>& part) {
    // Broken files are reported in our own words; libav's would only repeat them by the hundred.
    av_log_set_level(AV_LOG_QUIET);
    const QByteArray name = QFile::encodeName(path);
    if (auto checked = checkFile(name); !checked)
        return checked;

    AVFormatContext* context = nullptr;
    int opened = AVERROR_INVALIDDATA;
    if (const char* container = containerBySignature(name))
        opened = openAs(av_find_input_format(container), addressOf(name, part), context);
    if (opened < 0)
        opened = openAs(nullptr, addressOf(name, part), context);
    if (isAboutContent(opened))
        return Failure{u"It is damaged, or not in a format that can be played"_s};
    if (opened < 0)
        return Failure{libav::errorText(opened)};
    m_container.reset(context);
    if (const int found = avformat_find_stream_info(context, nullptr); found < 0)
        return Failure{libav::errorText(found)};
    return {};
}

Result<> AudioDecoder::openDecoder(const AVCodec* codec) {
    m_codec.reset(avcodec_alloc_context3(codec));
    m_packet.reset(av_packet_alloc());
    m_frame.reset(av_frame_alloc());
    if (!m_codec || !m_packet || !m_frame)
        return cannotOpen(ENOMEM);
    if (const int set = avcodec_parameters_to_context(m_codec.get(), m_stream->codecpar); set < 0)
        return Failure{libav::errorText(set)};
    m_codec->pkt_timebase = m_stream->time_base;
    m_codec->thread_count = 1;                     // the least work and the fewest wake-ups
    m_codec->flags2 |= AV_CODEC_FLAG2_SKIP_MANUAL; // delay and padding are cut by our own figures
    if (const int opened = avcodec_open2(m_codec.get(), codec, nullptr); opened < 0)
        return Failure{libav::errorText(opened)};
    return {};
}

Result<> AudioDecoder::decodeFirstBlock() {
    while (readPacket() && m_packet->size == 0)
        av_packet_unref(m_packet.get());
    if (isEncrypted(*m_stream, *m_packet))
        return Failure{u"It is encrypted"_s};
    m_origin = m_packet->pts == AV_NOPTS_VALUE ? 0 : m_packet->pts;
    m_packetDuration = m_packet->duration;
    m_firstPacketPosition = std::max<std::int64_t>(m_packet->pos, 0);
    m_expectedStart = 0;
    avcodec_send_packet(m_codec.get(), m_packet.get()); // an error shows as no frame below
    av_packet_unref(m_packet.get());
    if (!next())
        return Failure{u"There is no sound in the file that can be decoded"_s};
    // The first packet of Vorbis only prepares the second, which gives the first block.
    if (m_codec->codec_id == AV_CODEC_ID_VORBIS && m_frame->pts != AV_NOPTS_VALUE) {
        m_origin = m_frame->pts;
        m_blockStart = 0;
        m_expectedStart = m_frame->nb_samples;
    }

    const int channels = m_frame->ch_layout.nb_channels;
    const int rate = m_frame->sample_rate;
    if (channels < 1 || channels > maxChannels)
        return Failure{
            u"It has %1 channels; up to %2 can be played"_s.arg(channels).arg(maxChannels)};
    if (rate < 1 || rate > maxSampleRate)
        return Failure{u"Its sample rate of %1 Hz can't be played"_s.arg(rate)};
    return {};
}

/// Reads the next packet of our stream into m_packet; false at the end.
bool AudioDecoder::readPacket() {
    for (;;) {
        const int read = av_read_frame(m_container.get(), m_packet.get());
        if (read == 0 && m_packet->stream_index == m_stream->index)
            return true;
        av_packet_unref(m_packet.get());
        if (read == 0)
            continue;
        m_readError.reset();
        if (read != AVERROR_EOF)
            m_readError = libav::errorText(read);
        return false;
    }
}

bool AudioDecoder::next() {
    for (bool draining = false;;) {
        const int received = avcodec_receive_frame(m_codec.get(), m_frame.get());
        if (received == AVERROR_EOF)
            break;
        if (received == 0) {
            // Behind a seek some containers give no times until the next page.
            const bool hasPlace = m_expectedStart || m_frame->pts != AV_NOPTS_VALUE;
            if (!hasPlace || !isUsable() || isLeadIn())
                continue;
            place();
            return true;
        }
        // The decoder wants more, or a block was damaged: the gap shows where the next one begins.
        if (readPacket()) {
            if (m_ignoresTimes)
                m_packet->pts = AV_NOPTS_VALUE;
            avcodec_send_packet(m_codec.get(), m_packet.get());
            av_packet_unref(m_packet.get());
        } else if (draining) {
            break;
        } else {
            draining = true;
            avcodec_send_packet(m_codec.get(), nullptr);
        }
    }
    av_frame_unref(m_frame.get());
    return false;
}

/// Whether the frame just received is what the first one was; a damaged header may claim otherwise.
bool AudioDecoder::isUsable() const {
    const auto format = static_cast<AVSampleFormat>(m_frame->format);
    if (m_frame->nb_samples <= 0 || !sampleKind(format))
        return false;
    if (m_format.channels == 0)
        return true;
    return m_frame->sample_rate == m_format.sampleRate &&
           m_frame->ch_layout.nb_channels == m_format.channels;
}

/// Whether the frame just received is what the first packet of Vorbis gives, which only prepares
/// the second: later versions of libavcodec hand it out, marked as samples to be skipped.
bool AudioDecoder::isLeadIn() const {
    const auto* skip = av_frame_get_side_data(m_frame.get(), AV_FRAME_DATA_SKIP_SAMPLES);
    return m_codec->codec_id == AV_CODEC_ID_VORBIS && skip && skip->size >= sizeof(quint32) &&
           qFromLittleEndian<quint32>(skip->data) >= quint32(m_frame->nb_samples);
}

/// Says where the frame just received lies, and how.
void AudioDecoder::place() {
    if (m_format.channels == 0)
        m_format = {m_frame->sample_rate, m_frame->ch_layout.nb_channels,
                    speakerMask(m_frame->ch_layout)};
    const auto format = static_cast<AVSampleFormat>(m_frame->format);
    // The kind is one that is known: isUsable() has seen to that.
    m_layout = {sampleKind(format).value_or(SampleKind::f32), av_sample_fmt_is_planar(format) != 0,
                m_format.channels, m_frame->extended_data};

    m_blockStart = m_expectedStart.value_or(0);
    if (m_frame->pts != AV_NOPTS_VALUE) {
        const std::int64_t stated = toFrames(m_frame->pts);
        // A stream time coarser than a frame must not open gaps that are not there.
        const std::int64_t grain =
            av_rescale_q_rnd(1, m_stream->time_base, {1, m_format.sampleRate}, AV_ROUND_UP);
        if (!m_expectedStart)
            m_blockStart = onGrid(stated, grain);
        else if (std::abs(stated - *m_expectedStart) > grain)
            m_blockStart = stated;
    }
    m_expectedStart = m_blockStart + m_frame->nb_samples;
}

void AudioDecoder::copy(std::int64_t from, std::size_t frames, float* out) const noexcept {
    toInterleavedFloat(m_layout, static_cast<std::size_t>(from - m_blockStart), frames, out);
}

std::int64_t AudioDecoder::countFrames() {
    if (const auto indexed = indexFrames())
        return *indexed;
    std::int64_t end = m_origin;
    while (readPacket()) {
        if (m_packet->pts != AV_NOPTS_VALUE)
            end = std::max(end, m_packet->pts + m_packet->duration);
        av_packet_unref(m_packet.get());
    }
    const std::int64_t counted = std::max(toFrames(end), blockEnd());
    av_frame_unref(m_frame.get()); // the next block does not follow it any more
    return counted;
}

std::optional<std::int64_t> AudioDecoder::decodedEnd(std::int64_t near) {
    if (!seek(std::max<std::int64_t>(near, 0)))
        return std::nullopt;
    std::int64_t end = 0;
    do
        end = std::max(end, blockEnd());
    while (next());
    return end;
}

std::int64_t AudioDecoder::toFrames(std::int64_t streamTime) const {
    return av_rescale_q(streamTime - m_origin, m_stream->time_base, {1, m_format.sampleRate});
}

} // namespace halvane
