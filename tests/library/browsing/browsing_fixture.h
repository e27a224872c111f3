// SPDX-License-Identifier: MIT
#pragma once

#include "library/browsing/browsing.h"
#include "library/browsing/cover_store.h"
#include "library/browsing/table_order.h"
#include "library/tracks.h"
#include "library/user/language_setting.h"
#include "library/user/live_lists.h"
#include "library/user/playlists.h"
#include "library/user/track_user_data.h"
#include "support/fake_environment.h"

#include <gtest/gtest.h>

namespace halvane::test {

/// The lists of a library of six tracks.
struct BrowsingTest : testing::Test {
    MemoryPreferences preferences;
    Playlists playlists{preferences};
    LiveLists liveLists{preferences};
    CoverStore covers;
    LibraryStore store;
    FakeLanguages languages;
    LanguageSetting language{preferences, languages};
    TrackUserData userData{preferences};
    CatalogPublisher catalog{store, userData, language};
    QString current;
    TableOrder order{preferences};
    Browsing browsing{store, catalog, playlists, liveLists, userData, language, order, rowState()};

    RowState rowState() {
        RowState state;
        state.isLoved = [this](const QString& path) { return userData.isLoved(path); };
        state.rating = [](const QString&) { return 3; };
        state.plays = [this](const QString& path) { return userData.playCount(path); };
        state.availability = [](const QString&) { return TrackAvailability::missing; };
        state.isCurrent = [this](const QString& path) { return path == current; };
        state.covers = &covers;
        return state;
    }

    void SetUp() override {
        using namespace Qt::StringLiterals;
        // Titles a to f, by three spellings of two artists, on four albums and one without a title.
        std::vector<Track> tracks{trackOf(u"/m/a"_s, u"a"_s, u"Moss"_s, u"Fern"_s),
                                  trackOf(u"/m/b"_s, u"b"_s, u"Moss"_s, u"Fern"_s),
                                  trackOf(u"/m/c"_s, u"c"_s, u"Moss"_s, u"Bark"_s),
                                  trackOf(u"/m/d"_s, u"d"_s, u"Lark"_s, u"Song"_s),
                                  trackOf(u"/m/e"_s, u"e"_s, u"Lark"_s, {}),
                                  trackOf(u"/m/f"_s, u"f"_s, u"moss"_s, u"Fern"_s)};
        tracks[3].format = u"FLAC 96 kHz"_s;
        tracks[4].genre = u"Ambient"_s;
        store.append(rowsOf(tracks));
        catalog.rebuildImportedAlbums();
    }

    QString shown() {
        QString titles;
        for (std::size_t row = 0; row < browsing.visibleTracks()->size(); ++row)
            titles += browsing.visibleTracks()->item(row).title;
        return titles;
    }
    QStringList albums() {
        QStringList titles;
        for (std::size_t row = 0; row < browsing.visibleAlbums()->size(); ++row)
            titles += browsing.visibleAlbums()->item(row).title;
        return titles;
    }
    QStringList artists() {
        QStringList names;
        for (std::size_t row = 0; row < browsing.visibleArtists()->size(); ++row)
            names += browsing.visibleArtists()->item(row).name;
        return names;
    }
    [[nodiscard]] QueueItem entry(const QString& album, const QString& artist) const {
        QueueItem item;
        item.album = album;
        item.artist = artist;
        return item;
    }
};

} // namespace halvane::test
