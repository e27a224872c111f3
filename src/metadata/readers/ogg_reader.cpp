// SPDX-License-Identifier: MIT
#include "metadata/readers/ogg_reader.h"

#include "libav/ogg_links.h"
#include "metadata/readers/bounded_source.h"
#include "metadata/readers/taglib_stream.h"
#include "metadata/readers/taglib_tags.h"

#include <taglib/oggflacfile.h>
#include <taglib/opusfile.h>
#include <taglib/speexfile.h>
#include <taglib/vorbisfile.h>
#include <taglib/xiphcomment.h>

namespace halvane {

namespace {

template<typename File>
void addTags(TagFields& fields, BoundedFile& file) {
    TagLibStream stream(file);
    const File ogg(&stream, false);
    if (ogg.isValid() && ogg.tag())
        addVorbis(fields, *ogg.tag());
}

} // namespace

FileMetadata readOgg(BoundedFile& file) {
    FileMetadata result;
    const auto links = oggLinks(byteSource(file));
    if (links.empty())
        return result;
    const OggLink& first = links.front();
    result.stream.sampleRate = first.sampleRate;
    result.stream.bitsPerSample = first.bitsPerSample;
    for (const OggLink& link : links)
        result.stream.seconds += static_cast<double>(link.length) / link.sampleRate;
    switch (first.codec) {
    case OggCodec::vorbis:
        addTags<TagLib::Ogg::Vorbis::File>(result.tags, file);
        break;
    case OggCodec::opus:
        addTags<TagLib::Ogg::Opus::File>(result.tags, file);
        break;
    case OggCodec::flac:
        addTags<TagLib::Ogg::FLAC::File>(result.tags, file);
        break;
    case OggCodec::speex:
        addTags<TagLib::Ogg::Speex::File>(result.tags, file);
        break;
    }
    return result;
}

} // namespace halvane
