// SPDX-License-Identifier: MIT
// Copies the tags that TagLib parsed into the common fields. Any thread.
#pragma once

#include "metadata/readers/bounded_file.h"
#include "metadata/readers/tag_fields.h"

#include <taglib/tbytevector.h>
#include <taglib/tstring.h>

namespace TagLib {
class Tag;
namespace APE {
class Tag;
}
namespace FLAC {
class Picture;
}
namespace ID3v1 {
class Tag;
}
namespace ID3v2 {
class Tag;
}
namespace MP4 {
class Tag;
}
namespace Ogg {
class XiphComment;
}
namespace RIFF::Info {
class Tag;
}
} // namespace TagLib

namespace halvane {

QString fromTagLib(const TagLib::String& text);

/// Makes TagLib hand on fields of unsure encoding by undecidedText. Called before any file is read,
/// and may be called again.
void installLegacyTextReading();

/// The named field of this name, in any case, if there is one.
void addNamed(TagFields& fields, const QString& name, const QString& value);

void addId3v1(TagFields& fields, const TagLib::ID3v1::Tag& tag);
/// `tagOffset` is where the tag begins in the file, where texts that TagLib drops are found.
void addId3v2(TagFields& fields, const TagLib::ID3v2::Tag& tag, BoundedFile& file,
              qint64 tagOffset);
void addApe(TagFields& fields, const TagLib::APE::Tag& tag);
void addVorbis(TagFields& fields, TagLib::Ogg::XiphComment& tag);
void addPicture(TagFields& fields, const TagLib::FLAC::Picture& picture);
/// `type` is the kind of picture, by the number that ID3v2, FLAC and ASF share.
void addPicture(TagFields& fields, int type, const TagLib::ByteVector& bytes);
void addMp4(TagFields& fields, const TagLib::MP4::Tag& tag);
void addRiffInfo(TagFields& fields, const TagLib::RIFF::Info::Tag& tag);

} // namespace halvane
