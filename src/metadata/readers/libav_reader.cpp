// SPDX-License-Identifier: MIT
#include "metadata/readers/libav_reader.h"

#include "libav/container_figures.h"
#include "libav/functions.h"
#include "metadata/readers/bounded_source.h"
#include "metadata/readers/tag_names.h"

#include <QtEndian>

#include <algorithm>
#include <memory>

namespace halvane {

using namespace libav;

namespace {

// A BoundedFile as libavformat's input.
class LibavInput {
  public:
    explicit LibavInput(BoundedFile& file)
        : m_file(file) {
        constexpr int bufferBytes = 16 << 10;
        auto* buffer = static_cast<unsigned char*>(av_malloc(bufferBytes));
        m_io = avio_alloc_context(buffer, bufferBytes, 0, this, &read, nullptr, &seek);
    }
    ~LibavInput() {
        if (m_io)
            av_freep(&m_io->buffer);
        avio_context_free(&m_io);
    }
    LibavInput(const LibavInput&) = delete;
    LibavInput& operator=(const LibavInput&) = delete;

    [[nodiscard]] AVIOContext* io() const { return m_io; }
    static int isInterrupted(void* self) {
        return static_cast<LibavInput*>(self)->m_file.checkTime() ? 1 : 0;
    }

  private:
    static int read(void* self, uint8_t* data, int length) {
        auto& input = *static_cast<LibavInput*>(self);
        const qint64 got =
            input.m_file.read(input.m_position, length, reinterpret_cast<char*>(data));
        input.m_position += got;
        return got > 0 ? static_cast<int>(got) : AVERROR_EOF;
    }
    static int64_t seek(void* self, int64_t offset, int whence) {
        auto& input = *static_cast<LibavInput*>(self);
        if (whence == AVSEEK_SIZE)
            return input.m_file.size();
        const int64_t base = whence == SEEK_CUR   ? input.m_position
                             : whence == SEEK_END ? input.m_file.size()
                                                  : 0;
        if (offset < -base)
            return AVERROR(EINVAL);
        return input.m_position = base + offset;
    }

    BoundedFile& m_file;
    AVIOContext* m_io = nullptr;
    qint64 m_position = 0;
};

struct CloseFormat {
    void operator()(AVFormatContext* context) const { avformat_close_input(&context); }
};
using Format = std::unique_ptr<AVFormatContext, CloseFormat>;

Format open(LibavInput& input, Container container) {
    AVFormatContext* context = avformat_alloc_context();
    if (!context || !input.io())
        return Format(context);
    context->pb = input.io();
    context->interrupt_callback = {&LibavInput::isInterrupted, &input};
    context->probesize = 1 << 20;
    context->max_analyze_duration = 2 * AV_TIME_BASE;
    context->max_streams = 16;
    const AVInputFormat* format =
        container == Container::caf ? av_find_input_format("caf") : nullptr;
    // On failure the context is freed and set to null.
    avformat_open_input(&context, nullptr, format, nullptr);
    return Format(context);
}

const AVStream* firstAudioStream(const AVFormatContext& context) {
    for (unsigned int i = 0; i < context.nb_streams; ++i)
        if (context.streams[i]->codecpar->codec_type == AVMEDIA_TYPE_AUDIO)
            return context.streams[i];
    return nullptr;
}

int losslessBits(const AVCodecParameters& parameters) {
    const AVCodecDescriptor* codec = avcodec_descriptor_get(parameters.codec_id);
    const bool isCompanded =
        parameters.codec_id == AV_CODEC_ID_PCM_ALAW || parameters.codec_id == AV_CODEC_ID_PCM_MULAW;
    if (!codec || !(codec->props & AV_CODEC_PROP_LOSSLESS) || isCompanded)
        return 0;
    // The magic cookie of Apple Lossless: a 12-byte atom header, frame length, version, bits.
    constexpr int alacBits = 17;
    if (parameters.codec_id == AV_CODEC_ID_ALAC && parameters.extradata_size > alacBits)
        return parameters.extradata[alacBits];
    if (parameters.bits_per_raw_sample > 0)
        return parameters.bits_per_raw_sample;
    return av_get_bits_per_sample(parameters.codec_id);
}

// FLAC's own description (RFC 9639, 8.2), for the fields of the container around it are too short
// for high rates.
void takeFlacInfo(StreamFacts& facts, const AVCodecParameters& parameters) {
    constexpr int infoBytes = 34;
    if (parameters.codec_id != AV_CODEC_ID_FLAC || parameters.extradata_size < infoBytes)
        return;
    const auto packed = qFromBigEndian<quint32>(parameters.extradata + 10);
    facts.sampleRate = packed >> 12;
    facts.bitsPerSample = static_cast<int>(packed >> 4 & 31) + 1;
}

StreamFacts factsOf(const AVFormatContext& context) {
    StreamFacts facts;
    const AVStream* stream = firstAudioStream(context);
    if (!stream)
        return facts;
    facts.sampleRate = stream->codecpar->sample_rate;
    facts.bitsPerSample = losslessBits(*stream->codecpar);
    takeFlacInfo(facts, *stream->codecpar);
    if (stream->duration > 0)
        facts.seconds = static_cast<double>(stream->duration) * av_q2d(stream->time_base);
    else if (stream->nb_frames > 0 && facts.sampleRate > 0 &&
             av_get_bits_per_sample(stream->codecpar->codec_id) > 0)
        facts.seconds = static_cast<double>(stream->nb_frames) / facts.sampleRate;
    else if (context.duration > 0)
        facts.seconds = static_cast<double>(context.duration) / AV_TIME_BASE;
    return facts;
}

void addTags(TagFields& fields, const AVDictionary* dictionary) {
    for (const TagName& row : TagNames::libav)
        if (const AVDictionaryEntry* entry = av_dict_get(dictionary, row.name, nullptr, 0))
            fields.add(row.field, QString::fromUtf8(entry->value));
}

void addPictures(TagFields& fields, const AVFormatContext& context) {
    for (unsigned int i = 0; i < context.nb_streams; ++i) {
        const AVStream& stream = *context.streams[i];
        if (!(stream.disposition & AV_DISPOSITION_ATTACHED_PIC) || stream.attached_pic.size <= 0)
            continue;
        const QByteArray bytes(reinterpret_cast<const char*>(stream.attached_pic.data),
                               stream.attached_pic.size);
        fields.addPicture(PictureRank::other, [bytes] { return bytes; });
    }
}

} // namespace

FileMetadata readWithLibav(BoundedFile& file, Container container) {
    FileMetadata result;
    if (!libav::load())
        return result;
    // Messages about strange files are of no use to the user.
    av_log_set_level(AV_LOG_QUIET);
    LibavInput input(file);
    const Format context = open(input, container);
    if (!context)
        return result;
    result.stream = factsOf(*context);
    if (!result.stream.isComplete() && avformat_find_stream_info(context.get(), nullptr) >= 0)
        result.stream = factsOf(*context);
    if (container == Container::caf && result.stream.sampleRate > 0)
        if (const auto frames = cafMusicFrames(byteSource(file)))
            result.stream.seconds = static_cast<double>(*frames) / result.stream.sampleRate;
    if (container == Container::mp4)
        if (const auto extent = mp4SoundExtent(byteSource(file)))
            result.stream.seconds =
                static_cast<double>(extent->length) / static_cast<double>(extent->ticksPerSecond);
    addTags(result.tags, context->metadata);
    if (const AVStream* stream = firstAudioStream(*context))
        addTags(result.tags, stream->metadata);
    addPictures(result.tags, *context);
    return result;
}

} // namespace halvane
