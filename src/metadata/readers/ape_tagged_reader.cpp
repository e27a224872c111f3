// SPDX-License-Identifier: MIT
#include "metadata/readers/ape_tagged_reader.h"

#include "libav/container_figures.h"
#include "metadata/readers/bounded_source.h"
#include "metadata/readers/plain_taglib_file.h"
#include "metadata/readers/taglib_stream.h"
#include "metadata/readers/taglib_tags.h"

#include <taglib/apefile.h>
#include <taglib/apetag.h>
#include <taglib/id3v1tag.h>
#include <taglib/id3v2tag.h>
#include <taglib/mpcfile.h>
#include <taglib/trueaudiofile.h>
#include <taglib/wavpackfile.h>

namespace halvane {

namespace {

template<typename File>
void addTagsBehind(TagFields& fields, File& file) {
    if (auto* tag = file.ID3v1Tag(); tag && file.hasID3v1Tag())
        addId3v1(fields, *tag);
    if (auto* tag = file.APETag(); tag && file.hasAPETag())
        addApe(fields, *tag);
}

template<typename Properties>
StreamFacts factsOf(const Properties* properties, int bitsPerSample) {
    StreamFacts facts;
    if (!properties || properties->sampleRate() <= 0)
        return facts;
    facts.sampleRate = properties->sampleRate();
    facts.bitsPerSample = bitsPerSample;
    facts.seconds = properties->sampleFrames() / facts.sampleRate;
    return facts;
}

FileMetadata readWavPack(BoundedFile& file) {
    FileMetadata result;
    TagLibStream stream(file);
    TagLib::WavPack::File wavPack(&stream);
    addTagsBehind(result.tags, wavPack);
    const auto* properties = wavPack.audioProperties();
    const bool isLossless = properties && properties->isLossless();
    result.stream = factsOf(properties, isLossless ? properties->bitsPerSample() : 0);
    return result;
}

FileMetadata readMonkey(BoundedFile& file) {
    FileMetadata result;
    TagLibStream stream(file);
    TagLib::APE::File ape(&stream);
    addTagsBehind(result.tags, ape);
    const auto* properties = ape.audioProperties();
    result.stream = factsOf(properties, properties ? properties->bitsPerSample() : 0);
    return result;
}

FileMetadata readMusepack(BoundedFile& file, qint64 start) {
    FileMetadata result;
    TagLibStream stream(file);
    TagLib::MPC::File mpc(&stream);
    addTagsBehind(result.tags, mpc);
    result.stream = factsOf(mpc.audioProperties(), 0);
    if (const auto extent = musepackExtent(byteSource(file), start);
        extent && result.stream.sampleRate > 0)
        result.stream.seconds = static_cast<double>(extent->length) / result.stream.sampleRate;
    return result;
}

// TagLib does not look for this kind of tag in True Audio, where some writers put it.
void addApeTagAtEnd(TagFields& fields, BoundedFile& file, qint64 end) {
    constexpr qint64 footerBytes = 32;
    if (file.read(end - footerBytes, 8) != "APETAGEX")
        return;
    PlainTagLibFile plain(file);
    addApe(fields, TagLib::APE::Tag(&plain.file(), static_cast<taglib::Offset>(end - footerBytes)));
}

FileMetadata readTrueAudio(BoundedFile& file) {
    constexpr qint64 id3v1Bytes = 128;
    FileMetadata result;
    TagLibStream stream(file);
    TagLib::TrueAudio::File tta(&stream);
    if (auto* tag = tta.ID3v1Tag(); tag && tta.hasID3v1Tag())
        addId3v1(result.tags, *tag);
    addApeTagAtEnd(result.tags, file, file.size() - (tta.hasID3v1Tag() ? id3v1Bytes : 0));
    if (auto* tag = tta.ID3v2Tag(); tag && tta.hasID3v2Tag())
        addId3v2(result.tags, *tag, file, 0);
    const auto* properties = tta.audioProperties();
    result.stream = factsOf(properties, properties ? properties->bitsPerSample() : 0);
    return result;
}

} // namespace

FileMetadata readApeTagged(BoundedFile& file, const ContainerFacts& facts) {
    switch (facts.container) {
    case Container::wavpack:
        return readWavPack(file);
    case Container::ape:
        return readMonkey(file);
    case Container::musepack:
        return readMusepack(file, facts.audioStart);
    case Container::tta:
        return readTrueAudio(file);
    default:
        return {};
    }
}

} // namespace halvane
