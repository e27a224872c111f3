// SPDX-License-Identifier: MIT
#include "metadata/readers/libav_reader.h"

#include "libav/container_figures.h"
#include "metadata/readers/bounded_source.h"
#include "metadata/readers/libav_input.h"
#include "metadata/readers/tag_names.h"

#include <QtEndian>

namespace halvane {

using namespace libav;

namespace {

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

void addRows(TagFields& fields, const AVDictionary* dictionary, std::span<const TagName> rows) {
    for (const TagName& row : rows)
        if (const AVDictionaryEntry* entry = av_dict_get(dictionary, row.name, nullptr, 0))
            fields.add(row.field, QString::fromUtf8(entry->value));
}

void addTags(TagFields& fields, const AVDictionary* dictionary) {
    addRows(fields, dictionary, TagNames::libav);
    addRows(fields, dictionary, TagNames::named);
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
    LibavInput input(file);
    const LibavInput::Format context = input.open(container);
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
