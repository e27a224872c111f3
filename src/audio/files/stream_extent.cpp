// SPDX-License-Identifier: MIT
#include "audio/files/stream_extent.h"

#include "audio/files/audio_decoder.h"
#include "libav/container.h"

#include <QFile>

#include <algorithm>
#include <string_view>

namespace halvane {

using namespace libav;

namespace {

bool isContainer(const AudioDecoder& decoder, std::string_view name) {
    return std::string_view(decoder.container().iformat->name).starts_with(name);
}

std::int64_t scaled(std::int64_t ticks, std::int64_t ticksPerSecond, int sampleRate) {
    return av_rescale(ticks, sampleRate, ticksPerSecond);
}

/// The whole raw timeline: what the container states, or the count where it states nothing or
/// libavformat has only guessed from the bit rate.
std::int64_t rawLength(AudioDecoder& decoder) {
    const AVStream& stream = decoder.stream();
    const bool isGuess =
        decoder.container().duration_estimation_method == AVFMT_DURATION_FROM_BITRATE &&
        (isContainer(decoder, "mp3") || isContainer(decoder, "aac") ||
         isContainer(decoder, "loas"));
    if (isGuess || stream.duration == AV_NOPTS_VALUE || stream.duration <= 0)
        return decoder.countFrames();
    return av_rescale_q(stream.duration, stream.time_base, {1, decoder.format().sampleRate});
}

/// Frames that fit into the file behind the start of the sound; none for compressed sound.
std::optional<std::int64_t> framesOnDisk(const AudioDecoder& decoder) {
    const AVCodecParameters& codec = *decoder.stream().codecpar;
    const int bits = av_get_exact_bits_per_sample(codec.codec_id);
    if (bits < 8 || codec.ch_layout.nb_channels < 1)
        return std::nullopt;
    const std::int64_t size = avio_size(decoder.container().pb);
    return (size - decoder.firstPacketPosition()) / (bits / 8 * codec.ch_layout.nb_channels);
}

StreamExtent mp3FileExtent(AudioDecoder& decoder, QFile& file) {
    constexpr std::int64_t longestFrame = 2881;
    const std::int64_t first = decoder.firstPacketPosition();
    const std::int64_t from = std::max<std::int64_t>(first - longestFrame, 0);
    QByteArray head;
    if (file.seek(from))
        head = file.read(first - from);
    const std::int64_t blockFrames = decoder.blockEnd() - decoder.blockStart();
    std::int64_t raw = rawLength(decoder);
    const auto figures = mp3Figures(head);
    if (!figures)
        return {0, raw};
    // libavformat 63 leaves delay and padding out of the duration, libavformat 61 does not. Joined
    // files hold more than the first encoder's count, so a count far off is not taken.
    const std::int64_t stated = figures->blocks * blockFrames;
    if (stated > raw && stated - raw <= figures->delay + figures->padding)
        raw = stated;
    return mp3Extent(*figures, raw);
}

StreamExtent mp4FileExtent(AudioDecoder& decoder, QFile& file) {
    const int rate = decoder.format().sampleRate;
    const AVDictionaryEntry* tag =
        av_dict_get(decoder.container().metadata, "iTunSMPB", nullptr, 0);
    const std::int64_t raw = rawLength(decoder);
    if (const auto extent = tag ? gaplessTag(tag->value) : std::nullopt;
        extent && extent->delay + extent->length <= raw)
        return {extent->delay, extent->length};
    if (const auto extent =
            mp4Extent(byteSource(file), static_cast<std::uint32_t>(decoder.stream().id)))
        return {scaled(extent->delay, extent->ticksPerSecond, rate),
                scaled(extent->length, extent->ticksPerSecond, rate)};
    return {0, raw};
}

StreamExtent cafExtent(AudioDecoder& decoder, QFile& file) {
    const std::int64_t raw = rawLength(decoder);
    const auto table = cafPacketTable(byteSource(file));
    if (!table)
        return {0, raw};
    // Some writers state whole packets; only the last packet itself tells how full it is.
    const std::int64_t end = decoder.decodedEnd(raw - 1).value_or(raw);
    const std::int64_t delay = table->primingFrames;
    return {delay, std::min(table->validFrames, end - delay)};
}

StreamExtent musepackFileExtent(AudioDecoder& decoder, QFile& file) {
    const ByteSource source = byteSource(file);
    const qint64 start = detectContainer(source).audioStart;
    // libavformat's duration counts whole packets.
    return musepackExtent(source, start).value_or(StreamExtent{0, rawLength(decoder)});
}

// The sound is stored in whole blocks.
StreamExtent dsfFileExtent(AudioDecoder& decoder, QFile& file) {
    constexpr std::int64_t bitsInFrame = 8;
    const std::int64_t raw = rawLength(decoder);
    const auto bits = dsfBits(byteSource(file));
    return {0, bits ? std::min(*bits / bitsInFrame, raw) : raw};
}

// libavformat takes the chunks behind the sound for sound.
StreamExtent dsdiffFileExtent(AudioDecoder& decoder, QFile& file) {
    const std::int64_t raw = rawLength(decoder);
    const auto bytes = dsdiffSoundBytes(byteSource(file));
    return {0, bytes ? std::min(*bytes / decoder.format().channels, raw) : raw};
}

// libavformat guesses the length of a file with a picture from its size.
StreamExtent asfFileExtent(AudioDecoder& decoder, QFile& file) {
    const auto time = asfTime(byteSource(file));
    return {0, time ? scaled(*time, asfTicksPerSecond, decoder.format().sampleRate)
                    : rawLength(decoder)};
}

} // namespace

StreamExtent findExtent(AudioDecoder& decoder, const QString& path) {
    QFile file(path);
    const bool isOpen = file.open(QIODevice::ReadOnly | QIODevice::Unbuffered);
    StreamExtent extent;
    if (isOpen && isContainer(decoder, "mp3"))
        extent = mp3FileExtent(decoder, file);
    else if (isOpen && isContainer(decoder, "mov"))
        extent = mp4FileExtent(decoder, file);
    else if (isOpen && isContainer(decoder, "caf"))
        extent = cafExtent(decoder, file);
    else if (isOpen && isContainer(decoder, "mpc"))
        extent = musepackFileExtent(decoder, file);
    else if (isOpen && isContainer(decoder, "dsf"))
        extent = dsfFileExtent(decoder, file);
    else if (isOpen && isContainer(decoder, "iff"))
        extent = dsdiffFileExtent(decoder, file);
    else if (isOpen && isContainer(decoder, "asf"))
        extent = asfFileExtent(decoder, file);
    else if (isContainer(decoder, "aac"))
        extent = {adtsDelay, rawLength(decoder) - adtsDelay};
    else
        extent = {0, rawLength(decoder)};

    if (const auto available = framesOnDisk(decoder))
        extent.length = std::min(extent.length, *available - extent.delay);
    extent.length = std::max<std::int64_t>(extent.length, 0);
    return extent;
}

} // namespace halvane
