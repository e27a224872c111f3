// SPDX-License-Identifier: MIT
// Lists that are imported and exported, on real files and the whole controller.
#include "library/import/given_playlists.h"
#include "library/running_library.h"
#include "metadata/playlists/playlist_file.h"

#include <QDir>
#include <QFile>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace halvane::test {
namespace {

class PlaylistFilesTest : public testing::Test, public RunningLibrary {
  protected:
    void SetUp() override { start(); }

    QString text(const QString& name, const QByteArray& contents) {
        QFile file(music.filePath(name));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(contents);
        return file.fileName();
    }
    [[nodiscard]] const Playlist& newest() const { return library->playlists()->all().back(); }
    [[nodiscard]] QString message() const { return library->status()->text(); }
};

TEST_F(PlaylistFilesTest, AListBecomesAPlaylistInItsOrder) {
    const QString known = wave(u"b/Known.wav"_s);
    import({known});
    const QString fresh = wave(u"a 歌 %.wav"_s);
    const QString list =
        text(u"walk.m3u8"_s, "b/Known.wav\nB/KNOWN.WAV\ngone.wav\na 歌 %.wav\n"
                             "cover.jpg\nhttp://radio.example/x.mp3\nb/Known.wav\n");
    import({list});
    EXPECT_EQ(message(), u"Added \"walk\" · 2 of 6 not found · 1 network address left out"_s);
    EXPECT_FALSE(library->status()->isError());
    const QString gone = music.filePath(u"gone.wav"_s);
    EXPECT_EQ(newest().name, u"walk"_s);
    EXPECT_EQ(newest().trackPaths, (std::vector<QString>{known, gone, fresh}));
    EXPECT_EQ(library->store()->size(), 2U);
    EXPECT_EQ(queued(), (QStringList{u"Known"_s, u"a 歌 %"_s})) << "the list is what plays";
    EXPECT_EQ(current(), u"Known"_s) << "from its beginning";

    // The missing file comes later, and the list is opened once more, now with all of it known.
    wave(u"gone.wav"_s);
    import({list});
    EXPECT_EQ(newest().name, u"walk 2"_s);
    import({list, list});
    EXPECT_EQ(message(), u"Added 2 playlists · 2 of 12 not found · 2 network addresses left out"_s);
    EXPECT_EQ(library->playlists()->all().size(), 4U);
    EXPECT_EQ(library->store()->size(), 3U);
}

TEST_F(PlaylistFilesTest, WhatIsNoListIsToldAndChangesNothing) {
    QDir().mkpath(music.filePath(u"folder.m3u"_s));
    const std::pair<QString, QString> rows[] = {
        {text(u"a.xspf"_s, "<playlist>"), u"Can't read the list \"a.xspf\""_s},
        {text(u"b.m3u"_s, QByteArray(64, '\0')), u"Can't read the list \"b.m3u\""_s},
        {text(u"c.m3u"_s, "# nothing\n"), u"No supported audio files found"_s},
        {text(u"d.m3u8"_s, "#EXT-X-VERSION:3\nsegment.ts\n"), u"No supported audio files found"_s},
        {music.filePath(u"none.m3u"_s), u"Not found: none.m3u"_s},
        {music.filePath(u"folder.m3u"_s), u"No supported audio files found"_s},
    };
    for (const auto& [path, expected] : rows) {
        import({path});
        EXPECT_EQ(message(), expected) << path.toStdString();
        EXPECT_TRUE(library->status()->isError());
    }
    EXPECT_TRUE(library->playlists()->all().empty());

    import({wave(u"1.wav"_s), rows[0].first});
    EXPECT_TRUE(message().endsWith(u"\nAdded 1 to playlist · Can't read the list \"a.xspf\""_s))
        << message().toStdString();
}

// Entries that have no file where the list says.
TEST(GivenPlaylistsTest, EntriesAreFoundByWhatElseTheListSays) {
    const KnownTracks known{
        {u"/m/Café/Song.flac"_s, {u"Song"_s, u"Mira"_s, 200.0}},
        {u"/m/x/01.flac"_s, {u"Amber"_s, u"Mira"_s, 100.0}},
        {u"/m/y/01.flac"_s, {u"Amber"_s, u"Holt"_s, 150.0}},
        {u"/m/z/A.flac"_s, {u"A"_s, u"B"_s, std::nullopt}},
        {u"/m/z/a.flac"_s, {u"a"_s, u"B"_s, std::nullopt}},
    };
    const std::tuple<QString, QString, std::optional<double>, QString> rows[] = {
        {u"/m/cafe\u0301/SONG.FLAC"_s, {}, {}, u"/m/Café/Song.flac"_s},
        {u"/old/01.flac"_s, {}, {}, {}},
        {u"/old/01.flac"_s, u"Amber"_s, {}, {}},
        {u"/old/01.flac"_s, u"holt - amber"_s, {}, u"/m/y/01.flac"_s},
        {u"/old/01.flac"_s, u"Amber"_s, 101, u"/m/x/01.flac"_s},
        {u"/old/01.flac"_s, {}, 149, {}},
        {u"/old/01.flac"_s, u"Other"_s, 149, {}},
        {u"/old/song.flac"_s, {}, {}, {}},
        {u"/m/Z/a.flac"_s, {}, {}, {}},
    };
    std::vector<PlaylistEntry> entries;
    for (const auto& [path, label, seconds, expected] : rows)
        entries.push_back({{path}, label, seconds});
    const auto found = foundPaths(entries, known, [](const QString&) { return false; });
    ASSERT_EQ(found.size(), entries.size());
    for (std::size_t i = 0; i < found.size(); ++i)
        EXPECT_EQ(found[i], std::get<3>(rows[i])) << i;
}

TEST_F(PlaylistFilesTest, AnExportHoldsWhatIsMissingToo) {
    const QString a = wave(u"a.wav"_s);
    import({text(u"walk.m3u"_s, "gone.wav\na.wav\n")});
    const QUuid id = newest().id;
    library->playlists()->renamePlaylist(id, u".Night/夜"_s);
    const auto exportTo = [&](const QString& file) {
        library->playlistExport()->exportPlaylist(id);
        ASSERT_TRUE(environment.fileChooser.target);
        EXPECT_EQ(environment.fileChooser.target->fileName, u"_.Night-夜.m3u8"_s);
        bool isEnded = false;
        QObject::connect(
            library->playlistExport(), &PlaylistExport::ended, library.get(),
            [&isEnded] { isEnded = true; }, Qt::SingleShotConnection);
        environment.fileChooser.targetChosen(file);
        until([&isEnded] { return isEnded; });
    };
    for (const QString& name : {u"out.m3u8"_s, u"out.xspf"_s}) {
        exportTo(music.filePath(name));
        EXPECT_EQ(message(), u"Exported \".Night/夜\""_s);
        const auto list = loadPlaylist(music.filePath(name));
        ASSERT_TRUE(list);
        EXPECT_EQ(list->name, u".Night/夜"_s);
        ASSERT_EQ(list->entries.size(), 2U);
        EXPECT_EQ(list->entries[0].paths.front(), music.filePath(u"gone.wav"_s));
        EXPECT_EQ(list->entries[1].paths.front(), a);
        EXPECT_EQ(list->entries[1].seconds, 1);
    }
    const QStringList before = QDir(music.path()).entryList();
    exportTo(music.filePath(u"no folder/out.m3u8"_s));
    EXPECT_EQ(message(), u"Can't write \"out.m3u8\""_s);
    EXPECT_TRUE(library->status()->isError());
    EXPECT_EQ(QDir(music.path()).entryList(), before);
    library->playlistExport()->exportPlaylist(QUuid::createUuid());
}

} // namespace
} // namespace halvane::test
