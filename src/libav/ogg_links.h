// SPDX-License-Identifier: MIT
#pragma once

#include "libav/byte_source.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace halvane {

enum class OggCodec { vorbis, opus, flac, speex };

/// One of the streams that lie one behind the other in an Ogg file (RFC 3533, section 4: chaining).
/// Most files hold one.
struct OggLink {
    qint64 begin = 0; ///< bytes
    qint64 end = 0;
    OggCodec codec = OggCodec::vorbis;
    int sampleRate = 0; ///< hertz, after decoding
    int channels = 0;
    int bitsPerSample = 0; ///< of FLAC
    /// Frames that a decoder gives before the first frame of music.
    std::int64_t delay = 0;
    std::int64_t length = 0; ///< frames of music
};

/// The links of an Ogg file from its first on, as far as one can follow the other: a link of
/// another rate or number of channels ends the list, and so does one without sound. Lengths come
/// from the granule positions of the first and last pages, which are exact in every codec. Reads
/// the headers and the last pages only, and looks for the borders of links by halving. Empty where
/// the first link holds none of the codecs. Any thread.
std::vector<OggLink> oggLinks(const ByteSource& file);

/// A page of an Ogg stream.
struct OggPlace {
    qint64 begin = 0;         ///< where it begins in the file, in bytes
    std::int64_t granule = 0; ///< of the end of the last packet that ends on it
    int wholePackets = 0;     ///< that begin and end on it
};
/// The last page whose packets end at a granule position or before it, among those of the stream of
/// the page that begins at byte `from`. None where already the first of them ends behind it. Looks
/// by halving. Any thread.
std::optional<OggPlace> oggPageBefore(const ByteSource& file, qint64 from, std::int64_t granule);

} // namespace halvane
