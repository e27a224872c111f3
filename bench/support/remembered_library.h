// SPDX-License-Identifier: MIT
#pragma once

#include "library/user/settings_keys.h"
#include "metadata/cache/metadata_cache.h"
#include "platform/preferences/preferences.h"

#include <QDir>
#include <QFile>

namespace halvane::bench {

/// Makes so many empty files in a folder, their records in a cache and their paths in the
/// preferences, as the program leaves a library; gives the paths.
inline QStringList rememberLibrary(int size, const QString& music, const QString& cacheFolder,
                                   Preferences& preferences) {
    using namespace Qt::StringLiterals;
    std::vector<QueueItem> items;
    QStringList paths;
    for (int i = 0; i < size; ++i) {
        const QString album = u"%1/Artist %2/Album %3"_s.arg(music).arg(i / 48).arg(i / 12);
        if (i % 12 == 0)
            QDir().mkpath(album);
        QueueItem item;
        item.title = u"A song of some length %1"_s.arg(i);
        item.artist = u"Artist %1"_s.arg(i / 48);
        item.album = u"Album %1"_s.arg(i / 12);
        item.genre = u"Folk"_s;
        item.year = 1960 + i % 60;
        item.duration = u"3:%1"_s.arg(10 + i % 50);
        item.durationSeconds = 190 + i % 50;
        item.quality = u"FLAC 44.1 kHz / 16-bit"_s;
        item.sampleRate = u"44.1 kHz"_s;
        item.bitDepth = u"16-bit"_s;
        item.sourceURL = FileUrl(album + u"/%1 - A song of some length.flac"_s.arg(i % 12));
        item.coverURL = FileUrl(album + u"/cover.jpg"_s);
        QFile file(item.path());
        if (!file.open(QIODevice::WriteOnly))
            qFatal("no room for the library");
        paths.append(item.path());
        item.fileSize = 0;
        item.albumTags.albumArtist = item.artist;
        item.albumTags.disc = 1;
        item.albumTags.track = static_cast<quint16>(i % 12 + 1);
        items.push_back(std::move(item));
    }
    MetadataCache(cacheFolder).save(items);
    preferences.setStrings(SettingsKey::importedAudioPaths, paths);
    return paths;
}

} // namespace halvane::bench
