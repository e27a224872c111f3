// SPDX-License-Identifier: MIT
#include "metadata/playlists/playlist_file.h"
#include "metadata/playlists/playlist_writer.h"

#include <QFile>
#include <QStringEncoder>
#include <QTemporaryDir>

#include <gmock/gmock.h>

#include <sys/stat.h>

using namespace Qt::StringLiterals;
using testing::ElementsAre;

namespace halvane::test {
namespace {

std::string first(const PlaylistEntry& entry) {
    return entry.paths.empty() ? std::string() : entry.paths.front().toStdString();
}

std::vector<std::string> firstPaths(const PlaylistFile& list) {
    std::vector<std::string> paths;
    for (const PlaylistEntry& entry : list.entries)
        paths.push_back(first(entry));
    return paths;
}

PlaylistFile read(const QByteArray& contents, const QString& path = u"/lists/mine.m3u"_s) {
    const Result<PlaylistFile> list = readPlaylist(contents, path);
    EXPECT_TRUE(list) << contents.left(80).toStdString();
    return list ? *list : PlaylistFile();
}

QByteArray xspf(const QByteArray& tracks) {
    return R"(<?xml version="1.0" encoding="UTF-8"?><playlist version="1" xmlns="http://xspf.org/ns/0/">)"
           "<trackList>" +
           tracks + "</trackList></playlist>";
}

// Each location with the paths that it can mean, the likeliest first.
TEST(PlaylistFiles, ALocationIsReadInEveryWayThatPeopleWriteIt) {
    using Paths = QStringList;
    const std::pair<const char*, Paths> rows[] = {
        {"a.flac", {u"/lists/a.flac"_s}},
        {"  a b.flac \t", {u"/lists/a b.flac"_s}},
        {"./x/../a.flac", {u"/lists/a.flac"_s}},
        {"../../../a.flac", {u"/a.flac"_s}},
        {"/m//a.flac", {u"/m/a.flac"_s}},
        {"100%.flac", {u"/lists/100%.flac"_s}},
        {"5%2 %e9.flac", {u"/lists/5%2 %e9.flac"_s, u"/lists/5%2 é.flac"_s}},
        {"a%20b.flac", {u"/lists/a%20b.flac"_s, u"/lists/a b.flac"_s}},
        {"x\\a.flac", {u"/lists/x/a.flac"_s, u"/lists/x\\a.flac"_s}},
        {"C:\\Music\\a.flac", {u"/C:/Music/a.flac"_s, u"/lists/C:\\Music\\a.flac"_s}},
        {"\\\\nas\\m\\a.flac", {u"/nas/m/a.flac"_s, u"/lists/\\\\nas\\m\\a.flac"_s}},
        {"file:///m/%E6%AD%8C%20%231.flac", {u"/m/歌 #1.flac"_s, u"/m/%E6%AD%8C%20%231.flac"_s}},
        {"FILE://localhost/m/a.flac", {u"/m/a.flac"_s}},
        {"file:/m/a #1?.flac", {u"/m/a #1?.flac"_s}},
        {"file:///C:/m/a.flac", {u"/C:/m/a.flac"_s}},
        {"file:///m/%D6%DC%BD%DC%C2%D7.flac", // percent-encoded GBK
         {u"/m/周杰伦.flac"_s, u"/m/%D6%DC%BD%DC%C2%D7.flac"_s}},
        {"file:///m/a%00b.flac", {u"/m/a%00b.flac"_s}},
    };
    for (const auto& [line, paths] : rows) {
        const PlaylistFile list = read(line);
        ASSERT_EQ(list.entries.size(), 1U) << line;
        EXPECT_EQ(Paths(list.entries[0].paths.cbegin(), list.entries[0].paths.cend()), paths)
            << line;
    }
    EXPECT_EQ(first(read(QByteArray(70'000, 'a')).entries[0]), "") << "longer than any path";
    EXPECT_EQ(
        first(read(xspf("<track><location>x/a%20b.flac</location></track>"), u"/lists/a.xspf"_s)
                  .entries[0]),
        "/lists/x/a b.flac");
}

TEST(PlaylistFiles, AnM3uListIsReadWhicheverProgramWroteIt) {
    // As little as a list can hold, with the line ends of three systems.
    EXPECT_THAT(firstPaths(read("a.mp3\r\nb.mp3\n\n  \nc.mp3\rd.mp3")),
                ElementsAre("/lists/a.mp3", "/lists/b.mp3", "/lists/c.mp3", "/lists/d.mp3"));
    EXPECT_EQ(read("a.mp3").name, u"mine"_s);
    EXPECT_TRUE(read("").entries.empty());

    const PlaylistFile full =
        read("\xef\xbb\xbf#EXTM3U\r\n#PLAYLIST: Night  Walk \r\n"
             "#EXTINF:123,Mira Holt - Amber, live\r\n#EXTVLCOPT:x\r\na.mp3\r\n"
             "#extinf:-1 tvg-id=\"a,b\" x=\"y\",Only a title\r\nb.mp3\r\n"
             "# a remark\r\nHTTP://radio.example/a.mp3\r\n"
             "smb://nas/a.mp3\r\nfile://nas/a.mp3\r\nc.mp3\r\n");
    EXPECT_EQ(full.name, u"Night Walk"_s);
    EXPECT_EQ(full.addresses, 3);
    ASSERT_THAT(firstPaths(full), ElementsAre("/lists/a.mp3", "/lists/b.mp3", "/lists/c.mp3"));
    EXPECT_EQ(full.entries[0].label, u"Mira Holt - Amber, live"_s);
    EXPECT_EQ(full.entries[0].seconds, 123);
    EXPECT_EQ(full.entries[1].label, u"Only a title"_s);
    EXPECT_FALSE(full.entries[1].seconds);
    EXPECT_EQ(full.entries[2].label, QString()) << "of the address before it";
    for (const char* odd : {"#EXTINF:\na.mp3", "#EXTINF:inf,\na.mp3", "#EXTINF:1e999,\na.mp3",
                            "#EXTINF:\"\na.mp3", "#EXTINF:-7 , \na.mp3"})
        EXPECT_FALSE(read(odd).entries.at(0).seconds) << odd;
}

TEST(PlaylistFiles, OldEncodingsAreRecognised) {
    const auto inEncoding = [](const char* encoding, const QString& text) {
        QStringEncoder encode(encoding);
        return QByteArray(encode(text));
    };
    const std::pair<const char*, QString> rows[] = {
        {"ISO-8859-1", u"Björk/Jóga.mp3\nSigur Rós/Hoppípolla.mp3"_s},
        {"GB18030", u"周杰伦\\夜曲.mp3\n王菲\\红豆.mp3"_s},
        {"windows-1251", u"Кино/Группа крови.mp3\nКино/Звезда по имени Солнце.mp3"_s},
    };
    for (const auto& [encoding, text] : rows) {
        const QStringList names = QString(text).replace(u'\\', u'/').split(u'\n');
        EXPECT_THAT(
            firstPaths(read(inEncoding(encoding, text))),
            ElementsAre("/lists/" + names[0].toStdString(), "/lists/" + names[1].toStdString()))
            << encoding;
    }
    EXPECT_THAT(firstPaths(read("\xff\xfe" + inEncoding("UTF-16LE", u"歌.mp3\r\nb.mp3"_s))),
                ElementsAre("/lists/歌.mp3", "/lists/b.mp3"));
}

TEST(PlaylistFiles, AnXspfListIsRead) {
    const QByteArray tracks =
        "<track><location>file:///m/a.flac</location><title> Amber &amp; Oak </title>"
        "<creator>Mira</creator><duration>61500</duration><annotation>x</annotation>"
        "<extension application='x'><location>/no.flac</location></extension></track>"
        "<track><location>http://radio.example/a</location><location>b.flac</location></track>"
        "<track><location>http://radio.example/a</location></track><track/>";
    QByteArray document = xspf(tracks);
    document.replace("<trackList>", "<title>夜</title><trackList>");
    const PlaylistFile list = read(document, u"/lists/a.XSPF"_s);
    EXPECT_EQ(list.name, u"夜"_s);
    EXPECT_EQ(list.addresses, 1);
    ASSERT_THAT(firstPaths(list), ElementsAre("/m/a.flac", "/lists/b.flac", ""));
    EXPECT_EQ(list.entries[0].label, u"Mira - Amber & Oak"_s);
    EXPECT_EQ(list.entries[0].seconds, 61.5);
}

TEST(PlaylistFiles, WhatIsNoListIsRefused) {
    QByteArray bomb = R"(<!DOCTYPE p [<!ENTITY a "aaaaaaaaaa">)";
    for (char name = 'b'; name < 'k'; ++name)
        bomb += QByteArray("<!ENTITY ") + name + " \"" +
                QByteArray(1, '&').append(char(name - 1)).append(';').repeated(10) + "\">";
    bomb += "]><playlist><title>&j;</title></playlist>";
    const std::pair<QByteArray, const char*> rows[] = {
        {bomb, "/a.xspf"},
        {"", "/a.xspf"},
        {"<html/>", "/a.xspf"},
        {"<playlist><title>cut", "/a.xspf"},
        {"<playlist>" + QByteArray("<a>").repeated(100'000), "/a.xspf"},
        {QByteArray(1000, '\0'), "/a.xspf"},
        {QByteArray(1000, '\0'), "/a.m3u"},
        {QByteArray("a\n").repeated(250'001), "/a.m3u"},
    };
    for (const auto& [contents, path] : rows)
        EXPECT_FALSE(readPlaylist(contents, QString::fromUtf8(path)))
            << path << ": " << contents.left(40).toStdString();
    const QTemporaryDir folder;
    const QString pipe = folder.filePath(u"pipe.m3u"_s);
    ASSERT_EQ(mkfifo(pipe.toUtf8().constData(), 0600), 0);
    QFile large(folder.filePath(u"large.m3u"_s));
    ASSERT_TRUE(large.open(QIODevice::WriteOnly) && large.resize(largestPlaylistFile + 1));
    for (const QString& path :
         {pipe, large.fileName(), folder.path(), folder.filePath(u"none.m3u"_s)})
        EXPECT_FALSE(loadPlaylist(path)) << path.toStdString();
}

TEST(PlaylistFiles, WhatIsWrittenIsReadAgain) {
    const QTemporaryDir folder;
    const auto inside = [&](const char* name) { return folder.filePath(QString::fromUtf8(name)); };
    const std::vector<WrittenEntry> entries{
        {inside("a b.flac"), u"Mira - Holt"_s, u"Amber\n& <Oak>"_s, 61.5},
        {inside("x/歌 😀.flac"), {}, u"歌 \U0001F600"_s, 2},
        {inside("100% #1%20.flac"), {}, {}, {}},
        {inside("#first.flac"), u"A"_s, u"T"_s, {}},
        {inside("  blanks .flac"), {}, {}, {}},
        {inside("mail:to x.flac"), {}, {}, {}},
        {inside("back\\slash.flac"), {}, {}, {}},
        {inside("two\nlines.flac"), {}, {}, {}},
        {inside("e\xcc\x81.flac"), {}, {}, {}},
        {u"/elsewhere/b%20c.flac"_s, {}, u"\x01 control"_s, {}},
    };
    for (const char* extension : {"m3u8", "M3U", "xspf"}) {
        const QString path = folder.filePath(u"list."_s + QLatin1StringView(extension));
        ASSERT_TRUE(writePlaylist(path, u"夜 <1>"_s, entries));
        const Result<PlaylistFile> list = loadPlaylist(path);
        ASSERT_TRUE(list) << extension << list.failure().text.toStdString();
        EXPECT_EQ(list->name, u"夜 <1>"_s);
        ASSERT_EQ(list->entries.size(), entries.size()) << extension;
        for (std::size_t i = 0; i < entries.size(); ++i)
            EXPECT_EQ(first(list->entries[i]), entries[i].path.toStdString()) << extension;
        EXPECT_EQ(list->entries[0].label, u"Mira - Holt - Amber & <Oak>"_s);
        EXPECT_NEAR(list->entries[0].seconds.value_or(0), 61.5, 0.5);
    }
    const QByteArray text = playlistContents(inside("l.m3u8"), u"n"_s, entries);
    EXPECT_TRUE(text.startsWith("#EXTM3U\n#PLAYLIST:n\n#EXTINF:62,Mira - Holt - Amber & <Oak>\n"
                                "a b.flac\n#EXTINF:2,歌 😀\nx/歌 😀.flac\n"))
        << text.toStdString();

    const QString unwritable = folder.filePath(u"none/list.m3u8"_s);
    EXPECT_FALSE(writePlaylist(unwritable, u"n"_s, entries));
    EXPECT_FALSE(writePlaylist(folder.path(), u"n"_s, entries));
}

} // namespace
} // namespace halvane::test
