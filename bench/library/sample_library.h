// SPDX-License-Identifier: MIT
#pragma once

#include "library/catalog/library_store.h"
#include "model/string_pool.h"

#include <random>

namespace halvane::bench {

/// A library as people have them: albums of about a dozen tracks, artists with a handful of albums,
/// few genres and formats, titles of one to five words, one in ten of them Chinese. The same for
/// the same size.
inline TrackRows sampleLibrary(std::size_t size) {
    using namespace Qt::StringLiterals;
    static const QStringList words{
        u"Night"_s, u"Walk"_s, u"River"_s,  u"Stone"_s,   u"Silver"_s,   u"Morning"_s, u"Letters"_s,
        u"Über"_s,  u"Café"_s, u"Winter"_s, u"Harbour"_s, u"Lanterns"_s, u"Echo"_s,    u"Glass"_s,
        u"of"_s,    u"the"_s,  u"and"_s,    u"to"_s,      u"Blue"_s,     u"Summer"_s,  u"Road"_s};
    static const QStringList chinese{u"夜"_s,   u"城市"_s, u"月光"_s,
                                     u"河流"_s, u"春天"_s, u"远方"_s};
    static const QStringList genres{u"Jazz"_s, u"Rock"_s, u"Ambient"_s, u"Classical"_s, u"Folk"_s};
    static const QStringList formats{u"FLAC 44.1 kHz / 16-bit"_s, u"FLAC 96 kHz / 24-bit"_s,
                                     u"MP3 320 kbps · 44.1 kHz"_s};
    std::mt19937 generator(42);
    const auto pick = [&](const QStringList& list) {
        return list[static_cast<qsizetype>(generator() % static_cast<unsigned>(list.size()))];
    };
    const auto name = [&](unsigned most) {
        const bool isChinese = generator() % 10 == 0;
        QStringList parts;
        for (unsigned i = 0; i <= generator() % most; ++i)
            parts.append(pick(isChinese ? chinese : words));
        return parts.join(isChinese ? QString() : u" "_s);
    };
    StringPool pool;
    TrackRows rows;
    rows.reserve(size);
    QString artist;
    QString album;
    QString genre;
    QString format;
    for (std::size_t i = 0; i < size; ++i) {
        if (i % 60 == 0)
            artist = pool.shared(name(3) + u" "_s + QString::number(i / 60));
        if (i % 12 == 0) {
            album = pool.shared(name(4));
            genre = pick(genres);
            format = pick(formats);
        }
        Track track;
        track.sourceURL = FileUrl(u"/music/%1/%2/%3 - track.flac"_s.arg(artist, album).arg(i));
        track.title = name(5);
        track.artist = artist;
        track.album = album;
        track.genre = genre;
        track.format = format;
        track.year = 1970 + static_cast<qint64>(i / 12 % 50);
        track.durationSeconds = 120.0 + static_cast<double>(i % 240);
        track.duration = u"3:20"_s;
        track.sampleRate = u"44.1 kHz"_s;
        track.bitDepth = u"16-bit"_s;
        track.fileSize = 23'400'000;
        track.albumTags.albumArtist = artist;
        track.albumTags.disc = 1;
        track.albumTags.track = static_cast<quint16>(i % 12 + 1);
        rows.push_back(makeRow(std::move(track)));
    }
    return rows;
}

} // namespace halvane::bench
