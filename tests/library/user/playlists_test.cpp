// SPDX-License-Identifier: MIT
#include "library/user/playlists.h"
#include "library/user/settings_keys.h"
#include "support/memory_preferences.h"

#include <gtest/gtest.h>

using namespace halvane;
using namespace halvane::test;
using namespace Qt::StringLiterals;

namespace {

struct PlaylistsTest : testing::Test {
    MemoryPreferences preferences;
    Playlists playlists{preferences};

    [[nodiscard]] std::vector<QString> pathsOf(const QUuid& id) const {
        return playlists.find(id)->trackPaths;
    }
};

using Paths = std::vector<QString>;

} // namespace

TEST_F(PlaylistsTest, NamesAreTrimmedAndNeverEmpty) {
    EXPECT_TRUE(playlists.createPlaylist(u" \n\t"_s).isNull());
    EXPECT_EQ(preferences.changes(SettingsKey::playlists), 0);
    const QUuid id = playlists.createPlaylist(u"  Road trip\n"_s);
    ASSERT_FALSE(id.isNull());
    EXPECT_EQ(playlists.find(id)->name, u"Road trip"_s);
    playlists.renamePlaylist(id, u"  "_s);
    playlists.renamePlaylist(QUuid::createUuid(), u"x"_s);
    EXPECT_EQ(playlists.find(id)->name, u"Road trip"_s);
    playlists.renamePlaylist(id, u" Home "_s);
    EXPECT_EQ(playlists.find(id)->name, u"Home"_s);
}

TEST_F(PlaylistsTest, PathsAreHeldOnceInTheOrderGiven) {
    const QUuid id = playlists.createPlaylist(u"p"_s);
    playlists.addTrackPaths({u"b"_s}, id);
    playlists.addTrackPaths({u"a"_s, u"b"_s, u"a"_s, u"c"_s}, id);
    EXPECT_EQ(pathsOf(id), (Paths{u"b"_s, u"a"_s, u"c"_s}));
    const int changes = preferences.changes(SettingsKey::playlists);
    playlists.addTrackPaths({}, id);
    playlists.addTrackPaths({u"a"_s}, QUuid::createUuid());
    playlists.removeTrackPath(u"unknown"_s, id);
    EXPECT_EQ(preferences.changes(SettingsKey::playlists), changes);
    playlists.removePaths({u"a"_s, u"b"_s});
    EXPECT_EQ(pathsOf(id), Paths{u"c"_s});
}

TEST_F(PlaylistsTest, SurviveARestart) {
    const QUuid first = playlists.createPlaylist(u"夜 \"quoted\""_s);
    const QUuid second = playlists.createPlaylist(u"empty"_s);
    playlists.addTrackPaths({u"/音乐/a \\ b.flac"_s}, first);
    Playlists restarted(preferences);
    restarted.restore();
    EXPECT_EQ(restarted.all(), playlists.all());
    restarted.deletePlaylist(first);
    Playlists again(preferences);
    again.restore();
    ASSERT_EQ(again.all().size(), 1U);
    EXPECT_EQ(again.all().front().id, second);
}

TEST_F(PlaylistsTest, StoredDoublesAreBothRemoved) {
    preferences.setBlob(SettingsKey::playlists,
                        R"([{"id":"0A1B2C3D-0000-4000-8000-000000000001","name":"n",
                            "trackPaths":["a","b","a"],"later":1}])");
    playlists.restore();
    ASSERT_EQ(playlists.all().size(), 1U);
    const QUuid id = playlists.all().front().id;
    EXPECT_EQ(id, QUuid(u"{0a1b2c3d-0000-4000-8000-000000000001}"_s));
    playlists.removeTrackPath(u"a"_s, id);
    EXPECT_EQ(pathsOf(id), Paths{u"b"_s});
}

TEST_F(PlaylistsTest, WhatCannotBeDecodedIsLeftUntilTheNextChange) {
    const QByteArray good =
        R"({"id":"0a1b2c3d-0000-4000-8000-000000000001","name":"n","trackPaths":[]})";
    const QByteArray blobs[] = {
        "",
        "[",
        "{}",
        "[1]",
        "[" + good + ",{}]",
        R"([{"id":"no uuid","name":"n","trackPaths":[]}])",
        R"([{"id":"0a1b2c3d-0000-4000-8000-000000000001","name":1,"trackPaths":[]}])",
        R"([{"id":"0a1b2c3d-0000-4000-8000-000000000001","name":"n","trackPaths":[1]}])",
        R"([{"id":"0a1b2c3d-0000-4000-8000-000000000001","name":"n"}])"};
    for (const QByteArray& blob : blobs) {
        SCOPED_TRACE(blob.toStdString());
        EXPECT_FALSE(decodedPlaylists(blob));
        preferences.setBlob(SettingsKey::playlists, blob);
        Playlists restored(preferences);
        restored.restore();
        EXPECT_TRUE(restored.all().empty());
        EXPECT_EQ(*preferences.blob(SettingsKey::playlists), blob);
    }
    EXPECT_TRUE(decodedPlaylists("[" + good + "]"));
}
