// SPDX-License-Identifier: MIT
#pragma once

// Names for what TagLib 1 (Debian 12) and TagLib 2 (Debian 13 and later) call differently.

#include <taglib/audioproperties.h>
#include <taglib/taglib.h>
#include <taglib/tiostream.h>

#include <cstddef>

namespace TagLib::ID3v2 {
class FrameFactory;
}

namespace halvane::taglib {

#if TAGLIB_MAJOR_VERSION >= 2
using Offset = TagLib::offset_t;
using Start = Offset; ///< of a change
using Length = std::size_t;
#else
using Offset = long;
using Start = unsigned long;
using Length = unsigned long;
#endif

/// An MPEG::File or a FLAC::File, which take a factory for ID3v2 frames. TagLib 2 takes it last,
/// and calls the older order deprecated.
template<typename File>
File open(TagLib::IOStream& stream, TagLib::ID3v2::FrameFactory* factory, bool readsProperties) {
#if TAGLIB_MAJOR_VERSION >= 2
    return File(&stream, readsProperties, TagLib::AudioProperties::Average, factory);
#else
    return File(&stream, factory, readsProperties);
#endif
}

} // namespace halvane::taglib
