// SPDX-License-Identifier: MIT
// The meaning of each tag, in one table for each container. The later row wins where several tags
// of one table mean the same. Pictures come from APIC and PIC frames, "Cover Art" items, PICTURE
// blocks and METADATA_BLOCK_PICTURE comments, the covr atom, and attached pictures.
//
// A file can hold several tags. They are read in this order, and a later one replaces the fields of
// an earlier one:
//   MPEG, raw AAC: ID3v1, APE, ID3v2
//   FLAC:          ID3v1, ID3v2, Vorbis comments
//   WAV:           INFO list, ID3v2
//   AIFF, AIFF-C:  NAME and AUTH chunks, ID3v2
//   MP4:           its item list
//   CAF and all others: what libavformat names
#pragma once

#include "metadata/readers/tag_fields.h"

#include <span>

namespace halvane {

struct TagName {
    const char* name;
    TagField field;
};

namespace TagNames {

/// ID3v2.3 and 2.4. TagLib gives the frames of ID3v2.2 (TT2, TP1, TAL, TCO, TYE) and TYER of 2.3
/// these names too.
inline constexpr TagName id3v2[] = {
    {"TIT2", TagField::title},        {"TPE1", TagField::artist}, {"TALB", TagField::albumName},
    {"TDRC", TagField::creationDate}, {"TCON", TagField::type},
};

/// APE tags; TagLib compares their names in upper case.
inline constexpr TagName ape[] = {
    {"TITLE", TagField::title}, {"ARTIST", TagField::artist},     {"ALBUM", TagField::albumName},
    {"GENRE", TagField::type},  {"YEAR", TagField::creationDate},
};

/// Vorbis comments, in upper case. DATE is the usual one; YEAR is written by some rippers.
inline constexpr TagName vorbis[] = {
    {"TITLE", TagField::title}, {"ARTIST", TagField::artist},     {"ALBUM", TagField::albumName},
    {"GENRE", TagField::type},  {"YEAR", TagField::creationDate}, {"DATE", TagField::creationDate},
};

/// Items of MP4 files; the genre number of the gnre atom arrives as the text of the second last.
inline constexpr TagName mp4[] = {
    {"\251nam", TagField::title},     {"\251ART", TagField::artist},
    {"\251alb", TagField::albumName}, {"\251day", TagField::creationDate},
    {"\251gen", TagField::type},
};

/// The INFO list of RIFF files.
inline constexpr TagName riffInfo[] = {
    {"INAM", TagField::title}, {"IART", TagField::artist},       {"IPRD", TagField::albumName},
    {"IGNR", TagField::type},  {"ICRD", TagField::creationDate},
};

/// Text chunks of AIFF files.
inline constexpr TagName aiff[] = {
    {"NAME", TagField::title},
    {"AUTH", TagField::artist},
};

/// The common names that libavformat gives the tags of whatever it opens.
inline constexpr TagName libav[] = {
    {"title", TagField::title}, {"artist", TagField::artist},     {"album", TagField::albumName},
    {"genre", TagField::type},  {"year", TagField::creationDate}, {"date", TagField::creationDate},
};

} // namespace TagNames

} // namespace halvane
