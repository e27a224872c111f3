// SPDX-License-Identifier: MIT
#include "metadata/readers/taglib_reader.h"

#include "metadata/readers/id3v2_walk.h"
#include "metadata/readers/mp3_padding.h"
#include "metadata/readers/mp4_nesting.h"
#include "metadata/readers/riff_reader.h"
#include "metadata/readers/taglib_stream.h"
#include "metadata/readers/taglib_tags.h"

#include <taglib/apetag.h>
#include <taglib/flacfile.h>
#include <taglib/id3v1tag.h>
#include <taglib/id3v2framefactory.h>
#include <taglib/id3v2tag.h>
#include <taglib/mp4file.h>
#include <taglib/mpegfile.h>
#include <taglib/xiphcomment.h>

namespace halvane {

namespace {

constexpr double perMillisecond = 1e-3;

TagLib::ID3v2::FrameFactory* frameFactory() {
    return TagLib::ID3v2::FrameFactory::instance();
}

void leaveOutPadding(StreamFacts& stream, int samples) {
    const double padding = stream.sampleRate > 0 ? samples / stream.sampleRate : 0;
    if (padding < stream.seconds)
        stream.seconds -= padding;
}

FileMetadata readMpeg(BoundedFile& file, const ContainerFacts& facts) {
    FileMetadata result;
    TagLibStream stream(file);
    const bool isMpeg = facts.container == Container::mpeg;
    auto mpeg = taglib::open<TagLib::MPEG::File>(stream, frameFactory(), isMpeg);
    if (auto* tag = mpeg.ID3v1Tag(); tag && mpeg.hasID3v1Tag())
        addId3v1(result.tags, *tag);
    if (auto* tag = mpeg.APETag(); tag && mpeg.hasAPETag())
        addApe(result.tags, *tag);
    if (auto* tag = mpeg.ID3v2Tag(); tag && mpeg.hasID3v2Tag())
        addId3v2(result.tags, *tag, file, 0);
    if (const auto* properties = mpeg.audioProperties(); isMpeg && properties) {
        result.stream.seconds = properties->lengthInMilliseconds() * perMillisecond;
        result.stream.sampleRate = properties->sampleRate();
        if (properties->xingHeader())
            leaveOutPadding(result.stream, mp3PaddingSamples(file, mpeg.firstFrameOffset()));
    }
    return result;
}

// A damaged file may announce a tag that TagLib then does not give, so both are asked for.
FileMetadata readFlac(BoundedFile& file) {
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
        result.stream.seconds =
            static_cast<double>(properties->sampleFrames()) / properties->sampleRate();
    }
    return result;
}

FileMetadata readMp4(BoundedFile& file) {
    FileMetadata result;
    if (mp4NestsTooDeep(file))
        return result;
    TagLibStream stream(file);
    TagLib::MP4::File mp4(&stream);
    if (mp4.tag())
        addMp4(result.tags, *mp4.tag());
    if (const auto* properties = mp4.audioProperties()) {
        result.stream.seconds = properties->lengthInMilliseconds() * perMillisecond;
        result.stream.sampleRate = properties->sampleRate();
        if (properties->codec() == TagLib::MP4::Properties::ALAC)
            result.stream.bitsPerSample = properties->bitsPerSample();
    }
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
        return readFlac(file);
    case Container::mp4:
        return readMp4(file);
    case Container::wav:
    case Container::aiff:
        return readRiff(file, facts.container);
    case Container::caf:
    case Container::other:
        break;
    }
    return {};
}

} // namespace halvane
