// SPDX-License-Identifier: MIT
#include "library/tracks.h"
#include "library/user/remembering_library.h"
#include "library/user/said_transfer.h"

#include <QJsonDocument>
#include <QJsonObject>

using namespace Qt::StringLiterals;

namespace halvane::test {
namespace {

SaidEntry entry(const QString& path, quint64 sound, const Said& said) {
    return {path, {0, sound}, {}, {}, {}, said};
}

Track sounding(const QString& path, quint64 sound) {
    Track track = trackAt(path);
    track.identity = {0, sound};
    return track;
}

} // namespace

TEST(SaidFile, ReadsBackWhatItWrites) {
    SaidFile file;
    file.tracks = {{u"/a “b”\n.flac"_s, {7, 9}, u"T"_s, u"A"_s, u"B"_s, {true, 5, 12, 800'000'000}},
                   {u"/b"_s, {}, {}, {}, {}, {}},
                   {{}, {0, 3}, {}, {}, {}, {false, 0, 1}}};
    file.playlists = {{u"中文"_s, {u"/b"_s, u"/c"_s}}, {u"Empty"_s, {}}};
    EXPECT_EQ(SaidFile::fromJson(file.toJson()), file);
    EXPECT_EQ(SaidFile::fromJson(SaidFile().toJson()), SaidFile());
    EXPECT_TRUE(file.toJson().contains("\"lastPlayed\": \"2026-05-09T06:13:20Z\""));
}

TEST(SaidFile, TakesNothingFromNonsense) {
    for (const QByteArray& json : {QByteArray(), QByteArray("[]"), QByteArray("{\"tracks\":[]}"),
                                   QByteArray("\x00\xFF", 2), QByteArray("{\"kind\":1}")})
        EXPECT_EQ(SaidFile::fromJson(json), std::nullopt) << json.toStdString();
    const auto file = SaidFile::fromJson(R"({"kind":"Halvane listening data","later":true,
        "tracks":[7, {}, {"sound":"zz"}, {"path":"/a","rating":99,"plays":-3,"loved":"yes",
                  "lastPlayed":"soon","sound":"0"}, {"path":"/b","plays":1e300,"rating":2.5}],
        "playlists":[{"name":" "}, {"name":"P","paths":[1,"","/a"]}, 3]})");
    ASSERT_TRUE(file);
    ASSERT_EQ(file->tracks.size(), 2U);
    EXPECT_EQ(file->tracks[0], entry(u"/a"_s, 0, {false, 5, 0}));
    EXPECT_EQ(file->tracks[1].said.plays, 0);
    EXPECT_EQ(file->playlists, (std::vector<SaidPlaylist>{{u"P"_s, {u"/a"_s}}}));
}

TEST(SaidFile, HoldsAllThatWasSaidAndWhatPlaylistsNeed) {
    const TrackRows rows = rowsOf({sounding(u"/loved"_s, 1), sounding(u"/nothing"_s, 2),
                                   sounding(u"/listed"_s, 3), trackAt(u"/played"_s)});
    AllSaid said;
    said.loved = {u"/loved"_s};
    said.plays = {{u"/played"_s, 2}};
    said.lastPlayed = {{u"/played"_s, 60}};
    said.ofSounds = {{{0, 1}, {true, 0, 0}}, {{0, 8}, {false, 3, 0}}, {{0, 9}, {}}};
    Playlist playlist;
    playlist.name = u"P"_s;
    playlist.trackPaths = {u"/listed"_s, u"/gone"_s};
    const SaidFile file = saidFileOf(rows, said, {playlist});
    ASSERT_EQ(file.tracks.size(), 4U);
    EXPECT_EQ(file.tracks[0].said, (Said{true, 0, 0}));
    EXPECT_EQ(file.tracks[1].path, u"/listed"_s);
    EXPECT_EQ(file.tracks[2].said, (Said{false, 0, 2, 60}));
    EXPECT_EQ(file.tracks[3], entry({}, 8, {false, 3, 0})) << "a sound that has left";
    EXPECT_EQ(file.playlists, (std::vector<SaidPlaylist>{{u"P"_s, {u"/listed"_s, u"/gone"_s}}}));
}

TEST(SaidFile, EntriesFindTheirTracksBySoundAndElseByPath) {
    const TrackRows rows = rowsOf({sounding(u"/new/a"_s, 1), sounding(u"/copy"_s, 1),
                                   sounding(u"/other"_s, 2), trackAt(u"/plain"_s)});
    const Said said{false, 4, 0};
    const Said tomorrow{false, 4, 0, 101};
    struct Case {
        const char* name;
        SaidEntry entry;
        QStringList paths;
    };
    const Case cases[] = {
        {"moved, and there twice", entry(u"/old/a"_s, 1, tomorrow), {u"/new/a"_s, u"/copy"_s}},
        {"another sound is at its path", entry(u"/other"_s, 5, said), {}},
        {"here the sound is not known yet", entry(u"/plain"_s, 5, said), {u"/plain"_s}},
        {"the file does not know the sound", entry(u"/other"_s, 0, said), {u"/other"_s}},
        {"nowhere", entry(u"/gone"_s, 0, said), {}},
    };
    for (const Case& c : cases) {
        const SaidPlan plan =
            saidPlanOf({{c.entry}, {{u"P"_s, {c.entry.path, u"/x"_s}}}}, rows, 100);
        QStringList paths;
        for (const auto& [path, ofPath] : plan.ofPaths)
            paths.append(path);
        EXPECT_EQ(paths, c.paths) << c.name;
        for (const auto& [path, ofPath] : plan.ofPaths)
            EXPECT_EQ(ofPath, said) << "from tomorrow, and so without its date";
        EXPECT_EQ(plan.found, c.paths.isEmpty() ? 0 : 1) << c.name;
        EXPECT_EQ(plan.away, c.paths.isEmpty() ? 1 : 0) << c.name;
        EXPECT_EQ(plan.ofSounds.size(), c.entry.identity.isKnown() ? 1U : 0U) << c.name;
        const QString listed = c.paths.isEmpty() ? c.entry.path : c.paths.first();
        EXPECT_EQ(plan.playlists, (std::vector<SaidPlaylist>{{u"P"_s, {listed, u"/x"_s}}}))
            << c.name;
    }
}

namespace {

struct Transferring : RememberingLibrary {
    Transferring() { start(); }
    void ends(const std::function<void()>& act) {
        bool isDone = false;
        const auto connection = QObject::connect(library->saidTransfer(), &SaidTransfer::ended,
                                                 library.get(), [&isDone] { isDone = true; });
        act();
        until([&isDone] { return isDone; });
        QObject::disconnect(connection);
    }
    void exportTo(const QString& file) {
        ends([&] {
            library->saidTransfer()->exportSaid();
            environment.fileChooser.targetChosen(file);
        });
    }
    void importFrom(const QString& file) {
        ends([&] {
            library->saidTransfer()->importSaid();
            environment.fileChooser.chosen({file});
        });
    }
};

} // namespace

TEST(SaidTransfer, AnotherLibraryIsToldOfTheSameSounds) {
    Transferring old;
    QTemporaryDir kept;
    const QString file = kept.filePath(u"said.json"_s);
    QStringList paths;
    for (int sound = 0; sound < 3; ++sound) {
        paths.append(old.path(u"%1.wav"_s.arg(sound)));
        old.write(paths.last(), sound, u"Title"_s);
    }
    old.import({old.music.path()});
    old.settle();
    // The first one plays, as soon as its file is open.
    old.until([&] { return old.library->userData()->playCount(paths[0]) > 0; });
    old.library->userData()->setRating(4, paths[1]);
    old.library->userData()->countPlay(paths[1], 700'000'000);
    old.library->userData()->toggleLoved(paths[2]);
    old.library->playlists()->addPlaylist(u"Mine"_s, {paths[2], paths[1]});
    old.exportTo(file);
    EXPECT_EQ(old.library->status()->text(), u"Exported the listening data of 3 tracks"_s);

    // It has one of them under another name, another file, and a list of the same name.
    Transferring other;
    const QString own = other.path(u"a own.wav"_s);
    const QString renamed = other.path(u"renamed.wav"_s);
    other.write(own, 7, u"Own"_s);
    ASSERT_TRUE(QFile::copy(paths[1], renamed));
    other.import({other.music.path()});
    other.settle();
    other.library->userData()->toggleLoved(renamed);
    const QUuid mine = other.library->playlists()->addPlaylist(u"Mine"_s, {own});
    other.until([&] { return other.library->userData()->playCount(own) > 0; });
    const Said ofOwn = other.said(own);
    for (int times = 0; times < 2; ++times) {
        other.importFrom(file);
        EXPECT_EQ(other.library->status()->text(),
                  u"Imported the listening data of 1 track · 2 not in the library"_s);
        EXPECT_EQ(other.said(renamed), (Said{true, 4, 1, 700'000'000}));
        EXPECT_EQ(other.said(own), ofOwn);
        EXPECT_EQ(other.listed(mine), (std::vector{own, paths[2], renamed}));
    }
    // What was not there is told of when it comes.
    const QString later = other.path(u"later.wav"_s);
    ASSERT_TRUE(QFile::copy(paths[2], later));
    other.import({other.music.path()});
    other.settle();
    EXPECT_TRUE(other.said(later).isLoved);
}

TEST(SaidTransfer, SaysWhatWentWrong) {
    Transferring library;
    const auto& status = *library.library->status();
    library.write(library.path(u"a.wav"_s), 1, u"One"_s);
    library.importFrom(library.path(u"a.wav"_s));
    EXPECT_EQ(status.text(), u"No listening data in \"a.wav\""_s);
    EXPECT_TRUE(status.isError());
    library.importFrom(library.path(u"gone.json"_s));
    EXPECT_EQ(status.text(), u"No listening data in \"gone.json\""_s);
    library.exportTo(library.path(u"no/such/folder.json"_s));
    EXPECT_EQ(status.text(), u"Can't write \"folder.json\""_s);
}

} // namespace halvane::test
