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
//   Ogg:           Vorbis comments
//   WavPack, Monkey's Audio, Musepack: ID3v1, APE
//   True Audio:    ID3v1, APE, ID3v2
//   DSF, DSDIFF:   text chunks (of DSDIFF), ID3v2
//   ASF:           its description, its attributes
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

/// ID3v2.3 and 2.4. TagLib gives the frames of ID3v2.2 (TT2, TP1, TAL, TCO, TYE, TP2, TPA, TRK ...)
/// and TYER of 2.3 these names too.
inline constexpr TagName id3v2[] = {
    {"TIT2", TagField::title},
    {"TPE1", TagField::artist},
    {"TALB", TagField::albumName},
    {"TDRC", TagField::creationDate},
    {"TCON", TagField::type},
    {"TPE2", TagField::albumArtist},
    {"TPOS", TagField::discNumber},
    {"TRCK", TagField::trackNumber},
    {"TCMP", TagField::compilation},
    {"TSOP", TagField::artistSort},
    {"TSO2", TagField::albumArtistSort},
    {"TSOA", TagField::albumSort},
};

/// Fields that have the same names in most containers, in any case: among user text frames of
/// ID3v2, items of MP4 behind "----:com.apple.iTunes:", items of APE tags, Vorbis comments,
/// attributes of ASF, and what libavformat names.
inline constexpr TagName named[] = {
    {"REPLAYGAIN_TRACK_GAIN", TagField::trackGain},
    {"REPLAYGAIN_TRACK_PEAK", TagField::trackPeak},
    {"REPLAYGAIN_ALBUM_GAIN", TagField::albumGain},
    {"REPLAYGAIN_ALBUM_PEAK", TagField::albumPeak},
    {"R128_TRACK_GAIN", TagField::r128TrackGain},
    {"R128_ALBUM_GAIN", TagField::r128AlbumGain},
    {"FMPS_RATING", TagField::shareRating},
    {"FMPS_PLAYCOUNT", TagField::plays},
    {"RATING", TagField::rating},
    {"PLAYCOUNT", TagField::plays},
    {"PLAY_COUNT", TagField::plays},
};

/// APE tags; TagLib compares their names in upper case.
inline constexpr TagName ape[] = {
    {"TITLE", TagField::title},
    {"ARTIST", TagField::artist},
    {"ALBUM", TagField::albumName},
    {"GENRE", TagField::type},
    {"YEAR", TagField::creationDate},
    {"ALBUMARTIST", TagField::albumArtist},
    {"ALBUM ARTIST", TagField::albumArtist},
    {"DISC", TagField::discNumber},
    {"TRACK", TagField::trackNumber},
    {"COMPILATION", TagField::compilation},
    {"ARTISTSORT", TagField::artistSort},
    {"ALBUMARTISTSORT", TagField::albumArtistSort},
    {"ALBUMSORT", TagField::albumSort},
};

/// Vorbis comments, in upper case. DATE is the usual one; YEAR is written by some rippers.
inline constexpr TagName vorbis[] = {
    {"TITLE", TagField::title},
    {"ARTIST", TagField::artist},
    {"ALBUM", TagField::albumName},
    {"GENRE", TagField::type},
    {"YEAR", TagField::creationDate},
    {"DATE", TagField::creationDate},
    {"ALBUM ARTIST", TagField::albumArtist},
    {"ALBUMARTIST", TagField::albumArtist},
    {"DISCNUMBER", TagField::discNumber},
    {"TRACKNUMBER", TagField::trackNumber},
    {"COMPILATION", TagField::compilation},
    {"ARTISTSORT", TagField::artistSort},
    {"ALBUMARTISTSORT", TagField::albumArtistSort},
    {"ALBUMSORT", TagField::albumSort},
};

/// Items of MP4 files; the genre number of the gnre atom arrives as the text of the second last.
inline constexpr TagName mp4[] = {
    {"\251nam", TagField::title},        {"\251ART", TagField::artist},
    {"\251alb", TagField::albumName},    {"\251day", TagField::creationDate},
    {"\251gen", TagField::type},         {"aART", TagField::albumArtist},
    {"disk", TagField::discNumber},      {"trkn", TagField::trackNumber},
    {"cpil", TagField::compilation},     {"soar", TagField::artistSort},
    {"soaa", TagField::albumArtistSort}, {"soal", TagField::albumSort},
    {"rate", TagField::rating},
};

/// The INFO list of RIFF files, which knows no album artist and no disc. Track numbers stand under
/// either name.
inline constexpr TagName riffInfo[] = {
    {"INAM", TagField::title},        {"IART", TagField::artist},
    {"IPRD", TagField::albumName},    {"IGNR", TagField::type},
    {"ICRD", TagField::creationDate}, {"IPRT", TagField::trackNumber},
    {"ITRK", TagField::trackNumber},
};

/// Text chunks of AIFF files.
inline constexpr TagName aiff[] = {
    {"NAME", TagField::title},
    {"AUTH", TagField::artist},
};

/// Attributes of ASF files. Title and author have fields of their own.
inline constexpr TagName asf[] = {
    {"WM/AlbumTitle", TagField::albumName},
    {"WM/Genre", TagField::type},
    {"WM/Year", TagField::creationDate},
    {"WM/AlbumArtist", TagField::albumArtist},
    {"WM/PartOfSet", TagField::discNumber},
    {"WM/TrackNumber", TagField::trackNumber},
    {"WM/IsCompilation", TagField::compilation},
    {"WM/ArtistSortOrder", TagField::artistSort},
    {"WM/AlbumArtistSortOrder", TagField::albumArtistSort},
    {"WM/AlbumSortOrder", TagField::albumSort},
    {"WM/SharedUserRating", TagField::sharedRating},
};

/// The common names that libavformat gives the tags of whatever it opens. "track number" is what
/// CAF calls it.
inline constexpr TagName libav[] = {
    {"title", TagField::title},
    {"artist", TagField::artist},
    {"album", TagField::albumName},
    {"genre", TagField::type},
    {"year", TagField::creationDate},
    {"date", TagField::creationDate},
    {"album_artist", TagField::albumArtist},
    {"disc", TagField::discNumber},
    {"track number", TagField::trackNumber},
    {"track", TagField::trackNumber},
    {"compilation", TagField::compilation},
    {"artist-sort", TagField::artistSort},
    {"album_artist-sort", TagField::albumArtistSort},
    {"album-sort", TagField::albumSort},
};

} // namespace TagNames

} // namespace halvane
