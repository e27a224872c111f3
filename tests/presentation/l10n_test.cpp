// SPDX-License-Identifier: MIT
#include "platform/session/preferred_languages.h"
#include "presentation/l10n.h"
#include "presentation/strings.h"

#include <QMetaProperty>

#include <gtest/gtest.h>

namespace halvane {
namespace {

using namespace Qt::StringLiterals;

constexpr auto en = ResolvedLanguage::english;
constexpr auto zh = ResolvedLanguage::simplifiedChinese;

struct FixedLanguages final : PreferredLanguages {
    QStringList list;
    [[nodiscard]] QStringList tags() const override { return list; }
};

TEST(L10nTest, TheFirstPreferredLanguageDecides) {
    FixedLanguages system;
    const std::pair<QStringList, ResolvedLanguage> cases[] = {
        {{}, en},           {{u"zh-Hant-TW"_s}, zh},
        {{u"ZH"_s}, zh},    {{u"en-GB"_s, u"zh-Hans"_s}, en},
        {{u"de-DE"_s}, en},
    };
    for (const auto& [tags, expected] : cases) {
        system.list = tags;
        EXPECT_EQ(resolved(AppLanguage::system, system), expected) << tags.join(u' ').toStdString();
    }
    system.list = {u"zh-CN"_s};
    EXPECT_EQ(resolved(AppLanguage::english, system), en);
    system.list = {u"en-US"_s};
    EXPECT_EQ(resolved(AppLanguage::simplifiedChinese, system), zh);
}

TEST(L10nTest, KeysKeepTheirNumbersAndTexts) {
    EXPECT_EQ(L10n::keyCount, 241);
    EXPECT_EQ(static_cast<int>(L10nKey::appSubtitle), 0);
    EXPECT_EQ(static_cast<int>(L10nKey::presetFlat), 80);
    EXPECT_EQ(static_cast<int>(L10nKey::repeatOne), 142);
    EXPECT_EQ(L10n::text(L10nKey::playlist, en), u"Up Next"_s);
    EXPECT_EQ(L10n::text(L10nKey::savePreset, en), u"Save Preset..."_s);
    EXPECT_EQ(L10n::text(L10nKey::savePreset, zh), u"保存预设…"_s);
    EXPECT_EQ(L10n::text(static_cast<L10nKey>(L10n::keyCount), en), QString());
    EXPECT_EQ(L10n::text(static_cast<L10nKey>(-1), zh), QString());
}

TEST(L10nTest, SentencesPutTheirValuesInPlace) {
    const std::pair<QString, QString> cases[] = {
        {L10n::sleepTimer(0, en), u"Sleep timer off"_s},
        {L10n::sleepTimer(1, en), u"Playback pauses in 1 minute"_s},
        {L10n::sleepTimer(30, en), u"Playback pauses in 30 minutes"_s},
        {L10n::sleepTimer(30, zh), u"30 分钟后暂停播放"_s},
        {L10n::importStopped(0, en), u"Import stopped"_s},
        {L10n::importStopped(12, en), u"Import stopped, added 12"_s},
        {L10n::importStopped(1, zh), u"已停止导入，已加入 1 项"_s},
        {L10n::importReading(0.456, en), u"Reading files… 46%"_s},
        {L10n::importReading(1.5, zh), u"正在读取文件… 100%"_s},
        {L10n::playbackFailure({}, en), u"Can't play this file"_s},
        {L10n::playbackFailure({}, zh), u"无法播放此文件"_s},
        {L10n::playbackFailure(u"50% %1"_s, en), u"Can't play \"50% %1\""_s},
        {L10n::playbackFailure(u"歌"_s, zh), u"无法播放「歌」"_s},
        {L10n::downloadingTrack({}, en), u"Downloading \"\" from iCloud"_s},
        {L10n::downloadingTrack(u"A"_s, zh), u"正在从 iCloud 下载「A」"_s},
        {L10n::playsNext(u"50% %1"_s, 1, en), u"\"50% %1\" plays next"_s},
        {L10n::playsNext(u"A"_s, 2, en), u"2 tracks play next"_s},
        {L10n::playsNext(u"歌"_s, 1, zh), u"下一首播放「歌」"_s},
        {L10n::addedToQueue(u"A"_s, 1, en), u"Added \"A\" to Up Next"_s},
        {L10n::addedToQueue(u"A"_s, 3, zh), u"已将 3 首加入待播队列"_s},
        {L10n::removedFromQueue(u"A"_s, 3, en), u"Removed 3 tracks from Up Next"_s},
        {L10n::removedFromQueue(u"歌"_s, 1, zh), u"已从待播队列移除「歌」"_s},
        {L10n::removedFromLibrary(u"A"_s, 2, en), u"Removed 2 tracks from the library"_s},
        {L10n::removedFromPlaylist(u"A"_s, 1, u"%1"_s, en), u"Removed \"A\" from \"%1\""_s},
        {L10n::removedFromPlaylist(u"歌"_s, 1, u"夜"_s, zh), u"已从「夜」移除「歌」"_s},
        {L10n::deletedPlaylist(u"%1"_s, en), u"Deleted playlist \"%1\""_s},
        {L10n::addedPlaylists({u"%1 夜"_s}, 3, 40, 0, en),
         u"Added \"%1 夜\" · 3 of 40 not found"_s},
        {L10n::addedPlaylists({u"夜"_s}, 3, 40, 2, zh),
         u"已加入「夜」 · 40 项中有 3 项未找到 · 略过 2 个网络地址"_s},
        {L10n::addedPlaylists({u"a"_s, u"b"_s}, 0, 9, 1, en),
         u"Added 2 playlists · 1 network address left out"_s},
        {L10n::playlistUnreadable(u"a.m3u"_s, en), u"Can't read the list \"a.m3u\""_s},
        {L10n::exportedPlaylist(u"%1"_s, zh), u"已导出「%1」"_s},
        {L10n::playlistNotWritten(u"a.m3u8"_s, en), u"Can't write \"a.m3u8\""_s},
        {L10n::savedAsPlaylist(u"50% %1"_s, en), u"Saved as playlist \"50% %1\""_s},
        {L10n::maintenanceBadge(1, en), u"1 item needs attention"_s},
        {L10n::maintenanceBadge(0, en), u"0 items need attention"_s},
        {L10n::maintenanceBadge(1, zh), u"1 项待整理"_s},
        {L10n::artistSummary(1, 1, en), u"1 albums - 1 tracks"_s},
        {L10n::artistSummary(2, 1000, zh), u"2 张专辑 - 1000 首歌曲"_s},
        {L10n::guestSummary(1, en), u"Appears on 1 album"_s},
        {L10n::guestSummary(2, en), u"Appears on 2 albums"_s},
        {L10n::guestSummary(1, zh), u"参与 1 张专辑"_s},
        {L10n::visibleCount(250000, en), u"250000 visible"_s},
        {L10n::visibleCount(3, zh), u"显示 3 首"_s},
        {L10n::discHeading(2, en), u"Disc 2"_s},
        {L10n::discHeading(2, zh), u"光盘 2"_s},
        {L10n::confirmRemoveMissing(1, en),
         u"Remove 1 missing track from the library? The entry is removed; no files are deleted."_s},
        {L10n::confirmRemoveMissing(2, en),
         u"Remove 2 missing tracks from the library? Entries are removed; no files are deleted."_s},
        {L10n::confirmRemoveMissing(1, zh),
         u"从资料库移除 1 个丢失的曲目？只移除条目，不会删除任何文件。"_s},
        {L10n::confirmRemoveDuplicates(1, en),
         u"Remove extra copies in 1 duplicate group? One copy of each is kept; no files are deleted."_s},
        {L10n::confirmRemoveDuplicates(0, en),
         u"Remove extra copies in 0 duplicate groups? One copy of each is kept; no files are deleted."_s},
        {L10n::confirmRemoveDuplicates(4, zh),
         u"清理 4 组重复曲目的多余副本？每组保留一份，不会删除任何文件。"_s},
        {L10n::cloudDownloadStarted(1, en),
         u"Downloading 1 track from iCloud - it will be playable shortly"_s},
        {L10n::cloudDownloadStarted(12, en),
         u"Downloading 12 tracks from iCloud - they will be playable shortly"_s},
        {L10n::cloudDownloadStarted(1, zh), u"正在从 iCloud 下载 1 首，完成后自动恢复可播放"_s},
        {L10n::playlistCount(1, en), u"1 items"_s},
        {L10n::playlistCount(-1, zh), u"-1 项"_s},
        {L10n::importResult(0, 3, en), u"Already in playlist"_s},
        {L10n::importResult(0, 3, zh), u"已在播放列表中"_s},
        {L10n::importResult(0, 0, en), u"Added 0 to playlist"_s},
        {L10n::importResult(2, -1, en), u"Added 2 to playlist"_s},
        {L10n::importResult(2, 1, en), u"Added 2, skipped 1"_s},
        {L10n::importResult(2, 1, zh), u"已加入 2 项，跳过 1 项"_s},
        {L10n::importResult(2, 0, zh), u"已加入 2 项到播放列表"_s},
        {L10n::withLeftOut(u"Done"_s, 0, en), u"Done"_s},
        {L10n::withLeftOut(u"Done"_s, 4, en), u"Done · 4 of other kinds left out"_s},
        {L10n::withMissing(u"Done"_s, {}, en), u"Done"_s},
        {L10n::withMissing(u"Done"_s, {u"%1.mp3"_s}, en), u"Done · Not found: %1.mp3"_s},
        {L10n::withMissing({}, {u"a"_s, u"b"_s, u"c"_s}, en), u"Not found: a and 2 more"_s},
        {L10n::withMissing({}, {u"a"_s, u"b"_s, u"c"_s}, zh), u"找不到：a 等 3 项"_s},
        {L10n::withLeftOut(u"好"_s, 4, zh), u"好 · 4 个其他类型的文件未加入"_s},
        {L10n::timeSpan(0, en), u"0 min"_s},
        {L10n::timeSpan(81, en), u"1 h 21 min"_s},
        {L10n::timeSpan(60, zh), u"1 小时 0 分钟"_s},
        {L10n::timeSpan(16080, en), u"11 d 4 h"_s},
        {L10n::timeSpan(1440, zh), u"1 天 0 小时"_s},
        {L10n::tracksLeft(8, en), u"8 left"_s},
        {L10n::tracksLeft(8, zh), u"还剩 8 首"_s},
        {L10n::albumDuration(59, en), u"59 min"_s},
        {L10n::albumDuration(60, en), u"1h 0m"_s},
        {L10n::albumDuration(65, en), u"1h 5m"_s},
        {L10n::albumDuration(125, zh), u"2 小时 5 分钟"_s},
        {L10n::albumDuration(-61, en), u"-61 min"_s},
        {L10n::albumLength(0.4, en), u"1 sec"_s},
        {L10n::albumLength(42.9, en), u"42 sec"_s},
        {L10n::albumLength(42.9, zh), u"42 秒"_s},
        {L10n::albumLength(60, en), u"1 min"_s},
        {L10n::albumLength(3899.9, en), u"1h 4m"_s},
        {L10n::loveTrack(u"Kelp"_s, en), u"Love “Kelp”"_s},
        {L10n::dialogTitle(u"Save as Playlist..."_s), u"Save as Playlist"_s},
        {L10n::dialogTitle(u"存为播放列表…"_s), u"存为播放列表"_s},
        {L10n::dialogTitle(u"Rename"_s), u"Rename"_s},
        {L10n::trackCount(0, en), u"0 tracks"_s},
        {L10n::trackCount(1, en), u"1 track"_s},
        {L10n::trackCount(1, zh), u"1 首"_s},
        {L10n::languageName(AppLanguage::system, en), u"Auto"_s},
        {L10n::languageName(AppLanguage::system, zh), u"自动"_s},
        {L10n::languageName(AppLanguage::simplifiedChinese, en), u"中文"_s},
    };
    for (const auto& [actual, expected] : cases)
        EXPECT_EQ(actual, expected) << actual.toStdString();
}

TEST(StringsTest, EveryKeyIsAPropertyThatFollowsTheLanguage) {
    ResolvedLanguage language = en;
    Strings strings([&] { return language; });
    int texts = 0;
    const QMetaObject& meta = Strings::staticMetaObject;
    for (int i = meta.propertyOffset(); i < meta.propertyCount(); ++i) {
        const QMetaProperty property = meta.property(i);
        EXPECT_STREQ(property.notifySignal().name(), "languageChanged") << property.name();
        if (property.metaType() == QMetaType::fromType<QString>())
            texts += property.read(&strings).toString().isEmpty() ? 0 : 1;
    }
    EXPECT_EQ(texts, L10n::keyCount);

    EXPECT_EQ(strings.property("albums"), u"Albums"_s);
    language = zh;
    EXPECT_EQ(strings.property("albums"), u"专辑"_s);
    EXPECT_EQ(strings.sentences()->trackCount(2), u"2 首"_s);
}

} // namespace
} // namespace halvane
