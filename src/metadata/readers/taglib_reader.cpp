// SPDX-License-Identifier: MIT
#include "metadata/readers/taglib_reader.h"

#include "libav/container_figures.h"
#include "libav/flac_blocks.h"
#include "metadata/readers/ape_tagged_reader.h"
#include "metadata/readers/asf_reader.h"
#include "metadata/readers/bounded_source.h"
#include "metadata/readers/dsd_reader.h"
#include "metadata/readers/id3v2_walk.h"
#include "metadata/readers/mp4_nesting.h"
#include "metadata/readers/ogg_reader.h"
#include "metadata/readers/riff_reader.h"
#include "metadata/readers/taglib_stream.h"
#include "metadata/readers/taglib_tags.h"

#include <QtEndian>

#include <taglib/apetag.h>
#include <taglib/flacfile.h>
#include <taglib/id3v1tag.h>
#include <taglib/id3v2framefactory.h>
#include <taglib/id3v2tag.h>
#include <taglib/mp4file.h>
#include <taglib/mpegfile.h>
#include <taglib/mpegheader.h>
#include <taglib/tstringlist.h>
#include <taglib/xingheader.h>
#include <taglib/xiphcomment.h>

#include <cmath>

namespace halvane {

namespace {

constexpr double perMillisecond = 1e-3;

TagLib::ID3v2::FrameFactory* frameFactory() {
    return TagLib::ID3v2::FrameFactory::instance();
}

// How much more a file holds than its information frame states, where others were joined to it; 1
// where it holds what is stated, and tags.
double filesInOne(const BoundedFile& file, TagLib::MPEG::File& mpeg,
                  const TagLib::MPEG::XingHeader& information) {
    constexpr double more = 17.0 / 16;
    const auto at = mpeg.firstFrameOffset();
    const auto stated = static_cast<double>(information.totalSize());
    if (stated <= 0 || static_cast<double>(file.size() - at) < more * stated)
        return 1;
    const double times = static_cast<double>(mpeg.lastFrameOffset() - at) / stated;
    return times < more ? 1 : times;
}

// The frames of an MPEG stream: stated in its information frame, or as many as fill the time that
// TagLib guesses from the size and the first frame's bitrate, which it rounds to milliseconds.
void readLength(StreamFacts& stream, BoundedFile& file, TagLib::MPEG::File& mpeg) {
    const auto& properties = *mpeg.audioProperties();
    const auto at = mpeg.firstFrameOffset();
    const TagLib::MPEG::Header header(&mpeg, at, false);
    const std::int64_t block = header.isValid() ? header.samplesPerFrame() : 0;
    if (block == 0 || properties.sampleRate() <= 0)
        return;
    const auto* information = properties.xingHeader();
    std::int64_t frames = 0;
    if (information && information->isValid()) {
        frames = information->totalFrames() * block;
        if (const auto figures = mp3Figures(file.read(at, header.frameLength())))
            frames = mp3Extent(*figures, frames).length;
        if (const double times = filesInOne(file, mpeg, *information); times > 1) {
            frames = std::llround(static_cast<double>(frames) * times);
            stream.guessedFrom = at;
        }
    } else {
        frames = std::llround(properties.lengthInMilliseconds() * perMillisecond *
                              properties.sampleRate() / static_cast<double>(block)) *
                 block;
        stream.guessedFrom = at;
    }
    if (frames > 0)
        stream.seconds = static_cast<double>(frames) / properties.sampleRate();
}

// Some programs put an APE tag in front of the first frame, where TagLib does not look. Its header
// tells how far behind it the footer is.
void addApeInFront(TagFields& fields, BoundedFile& file, TagLib::MPEG::File& mpeg) {
    const QByteArray header = file.read(0, 16);
    if (header.size() != 16 || !header.startsWith("APETAGEX"))
        return;
    const qint64 footer = qFromLittleEndian<quint32>(header.constData() + 12);
    if (file.read(footer, 8) == "APETAGEX")
        addApe(fields, TagLib::APE::Tag(&mpeg, static_cast<taglib::Offset>(footer)));
}

FileMetadata readMpeg(BoundedFile& file, const ContainerFacts& facts) {
    FileMetadata result;
    TagLibStream stream(file);
    const bool isMpeg = facts.container == Container::mpeg;
    auto mpeg = taglib::open<TagLib::MPEG::File>(stream, frameFactory(), isMpeg);
    if (auto* tag = mpeg.ID3v1Tag(); tag && mpeg.hasID3v1Tag())
        addId3v1(result.tags, *tag);
    addApeInFront(result.tags, file, mpeg);
    if (auto* tag = mpeg.APETag(); tag && mpeg.hasAPETag())
        addApe(result.tags, *tag);
    if (auto* tag = mpeg.ID3v2Tag(); tag && mpeg.hasID3v2Tag())
        addId3v2(result.tags, *tag, file, 0);
    if (const auto* properties = mpeg.audioProperties(); isMpeg && properties) {
        result.stream.sampleRate = properties->sampleRate();
        readLength(result.stream, file, mpeg);
    }
    return result;
}

// A damaged file may announce a tag that TagLib then does not give, so both are asked for.
FileMetadata readFlac(BoundedFile& file, qint64 start) {
    FileMetadata result;
    TagLibStream stream(file);
    auto flac = taglib::open<TagLib::FLAC::File>(stream, frameFactory(), true);
    if (auto* tag = flac.ID3v1Tag(); tag && flac.hasID3v1Tag())
        addId3v1(result.tags, *tag);
    if (auto* tag = flac.ID3v2Tag(); tag && flac.hasID3v2Tag())
        addId3v2(result.tags, *tag, file, 0);
    if (auto* tag = flac.xiphComment(); tag && flac.hasXiphComment())
        addVorbis(result.tags, *tag);
    for (const auto* picture : flac.pictureList())
        addPicture(result.tags, *picture);
    const auto* properties = flac.audioProperties();
    if (properties && properties->sampleRate() > 0) {
        result.stream.sampleRate = properties->sampleRate();
        result.stream.bitsPerSample = properties->bitsPerSample();
        std::int64_t frames = properties->sampleFrames();
        if (frames == 0)
            frames = flacEnd(byteSource(file), start).value_or(0);
        result.stream.seconds = static_cast<double>(frames) / properties->sampleRate();
    }
    return result;
}

// The music of an MP4 file: what a tag of its encoder says, if that fits, or else its edit list.
double mp4Seconds(BoundedFile& file, const TagLib::MP4::Tag* tag, double sampleRate) {
    const auto edit = mp4SoundExtent(byteSource(file));
    if (!edit)
        return 0;
    const double whole =
        static_cast<double>(edit->whole) / static_cast<double>(edit->ticksPerSecond);
    const auto item = tag ? tag->item("----:com.apple.iTunes:iTunSMPB") : TagLib::MP4::Item();
    if (item.isValid() && sampleRate > 0) {
        const auto text = fromTagLib(item.toStringList().toString()).toLatin1();
        if (const auto stated = gaplessTag(text);
            stated && static_cast<double>(stated->delay + stated->length) <= whole * sampleRate)
            return static_cast<double>(stated->length) / sampleRate;
    }
    return static_cast<double>(edit->length) / static_cast<double>(edit->ticksPerSecond);
}

FileMetadata readMp4(BoundedFile& file) {
    FileMetadata result;
    if (mp4NestsTooDeep(file))
        return result;
    TagLibStream stream(file);
    TagLib::MP4::File mp4(&stream);
    if (mp4.tag())
        addMp4(result.tags, *mp4.tag());
    using Properties = TagLib::MP4::Properties;
    const auto* properties = mp4.audioProperties();
    // The sound description's own figures hold for these two. A rate this low may be that of AAC's
    // core, which its extension doubles.
    constexpr int highestCoreRate = 24'000;
    const bool isAac = properties && properties->codec() == Properties::AAC &&
                       properties->sampleRate() > highestCoreRate;
    const bool isAlac = properties && properties->codec() == Properties::ALAC;
    if (isAac || isAlac) {
        result.stream.sampleRate = properties->sampleRate();
        result.stream.seconds = mp4Seconds(file, mp4.tag(), properties->sampleRate());
    }
    if (isAlac)
        result.stream.bitsPerSample = properties->bitsPerSample();
    return result;
}

} // namespace

FileMetadata readWithTagLib(BoundedFile& file, const ContainerFacts& facts) {
    installLegacyTextReading();
    if (facts.audioStart > 0 && id3v2IsOvercrowded(file, 0))
        return {};
    switch (facts.container) {
    case Container::mpeg:
    case Container::adts:
    case Container::adif:
        return readMpeg(file, facts);
    case Container::flac:
        return readFlac(file, facts.audioStart);
    case Container::mp4:
        return readMp4(file);
    case Container::wav:
    case Container::aiff:
        return readRiff(file, facts.container);
    case Container::ogg:
        return readOgg(file);
    case Container::wavpack:
    case Container::ape:
    case Container::musepack:
    case Container::tta:
        return readApeTagged(file, facts);
    case Container::dsf:
    case Container::dff:
        return readDsd(file, facts.container);
    case Container::asf:
        return readAsf(file);
    case Container::caf:
    case Container::other:
        break;
    }
    return {};
}

} // namespace halvane
