// SPDX-License-Identifier: MIT
#include "presentation/l10n.h"

#include "platform/session/preferred_languages.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace halvane {

using namespace Qt::StringLiterals;

ResolvedLanguage systemResolved(const PreferredLanguages& system) {
    const QStringList tags = system.tags();
    return !tags.isEmpty() && tags.first().toLower().startsWith("zh"_L1)
               ? ResolvedLanguage::simplifiedChinese
               : ResolvedLanguage::english;
}

ResolvedLanguage resolved(AppLanguage setting, const PreferredLanguages& system) {
    switch (setting) {
    case AppLanguage::english:
        return ResolvedLanguage::english;
    case AppLanguage::simplifiedChinese:
        return ResolvedLanguage::simplifiedChinese;
    case AppLanguage::system:
        break;
    }
    return systemResolved(system);
}

namespace L10n {

namespace {

using Table = std::array<QString, keyCount>;

// The texts stay in the program's read-only data; the strings only point there.

const Table& englishTable() {
    static const Table table{{
#define HALVANE_L10N_TEXT(key, english, chinese) QStringLiteral(english),
        HALVANE_L10N_TABLE(HALVANE_L10N_TEXT)
#undef HALVANE_L10N_TEXT
    }};
    return table;
}

const Table& chineseTable() {
    static const Table table{{
#define HALVANE_L10N_TEXT(key, english, chinese) QStringLiteral(chinese),
        HALVANE_L10N_TABLE(HALVANE_L10N_TEXT)
#undef HALVANE_L10N_TEXT
    }};
    return table;
}

#define HALVANE_L10N_CHECK(key, english, chinese)                                                  \
    static_assert(sizeof(english) > sizeof(char16_t) && sizeof(chinese) > sizeof(char16_t),        \
                  "a text is empty");
HALVANE_L10N_TABLE(HALVANE_L10N_CHECK)
#undef HALVANE_L10N_CHECK

bool isChinese(ResolvedLanguage language) {
    return language == ResolvedLanguage::simplifiedChinese;
}

// Puts a number into the place of the text's %1. Never grouped, whatever the locale.
QString with(QStringView text, qint64 number) {
    return text.toString().replace(u"%1"_s, QString::number(number));
}

// One track by its title, several by their number.
QString named(const QString& title, qint64 count, ResolvedLanguage language) {
    if (count != 1)
        return isChinese(language) ? with(u" %1 首", count) : with(u"%1 tracks", count);
    return isChinese(language) ? u"「"_s + title + u"」"_s : u'"' + title + u'"';
}

} // namespace

QString text(L10nKey key, ResolvedLanguage language) {
    const auto index = static_cast<std::size_t>(key);
    if (index >= keyCount)
        return {};
    return isChinese(language) ? chineseTable()[index] : englishTable()[index];
}

// Titles are put together, never passed through a pattern: a title may hold a percent sign.

QString playbackFailure(const QString& trackTitle, ResolvedLanguage language) {
    if (trackTitle.isEmpty())
        return isChinese(language) ? u"无法播放此文件"_s : u"Can't play this file"_s;
    return isChinese(language) ? u"无法播放「"_s + trackTitle + u"」"_s
                               : u"Can't play \""_s + trackTitle + u"\""_s;
}

QString waitingForDisk(const QString& trackTitle, ResolvedLanguage language) {
    return isChinese(language) ? u"正在等待「"_s + trackTitle + u"」所在的磁盘…"_s
                               : u"Waiting for the disk that holds \""_s + trackTitle + u"\"..."_s;
}

QString diskDoesNotAnswer(const QString& trackTitle, ResolvedLanguage language) {
    return isChinese(language) ? u"「"_s + trackTitle + u"」所在的磁盘没有响应"_s
                               : u"The disk that holds \""_s + trackTitle + u"\" does not answer"_s;
}

QString downloadingTrack(const QString& trackTitle, ResolvedLanguage language) {
    return isChinese(language) ? u"正在从 iCloud 下载「"_s + trackTitle + u"」"_s
                               : u"Downloading \""_s + trackTitle + u"\" from iCloud"_s;
}

QString playsNext(const QString& trackTitle, qint64 count, ResolvedLanguage language) {
    if (isChinese(language))
        return u"下一首播放"_s + named(trackTitle, count, language);
    return count == 1 ? named(trackTitle, count, language) + u" plays next"_s
                      : named(trackTitle, count, language) + u" play next"_s;
}

QString addedToQueue(const QString& trackTitle, qint64 count, ResolvedLanguage language) {
    return isChinese(language)
               ? u"已将"_s + named(trackTitle, count, language) + u"加入待播队列"_s
               : u"Added "_s + named(trackTitle, count, language) + u" to Up Next"_s;
}

QString removedFromQueue(const QString& trackTitle, qint64 count, ResolvedLanguage language) {
    return isChinese(language)
               ? u"已从待播队列移除"_s + named(trackTitle, count, language)
               : u"Removed "_s + named(trackTitle, count, language) + u" from Up Next"_s;
}

QString removedFromLibrary(const QString& trackTitle, qint64 count, ResolvedLanguage language) {
    return isChinese(language)
               ? u"已从资料库移除"_s + named(trackTitle, count, language)
               : u"Removed "_s + named(trackTitle, count, language) + u" from the library"_s;
}

QString removedFromPlaylist(const QString& trackTitle, qint64 count, const QString& name,
                            ResolvedLanguage language) {
    return isChinese(language)
               ? u"已从「"_s + name + u"」移除"_s + named(trackTitle, count, language)
               : u"Removed "_s + named(trackTitle, count, language) + u" from \""_s + name + u'"';
}

QString deletedPlaylist(const QString& name, ResolvedLanguage language) {
    return isChinese(language) ? u"已删除播放列表「"_s + name + u"」"_s
                               : u"Deleted playlist \""_s + name + u'"';
}

QString deletedLiveList(const QString& name, ResolvedLanguage language) {
    return isChinese(language) ? u"已删除智能列表「"_s + name + u"」"_s
                               : u"Deleted live list \""_s + name + u'"';
}

QString savedAsPlaylist(const QString& name, ResolvedLanguage language) {
    return isChinese(language) ? u"已存为播放列表「"_s + name + u"」"_s
                               : u"Saved as playlist \""_s + name + u"\""_s;
}

QString maintenanceBadge(qint64 count, ResolvedLanguage language) {
    if (isChinese(language))
        return with(u"%1 项待整理", count);
    return count == 1 ? u"1 item needs attention"_s : with(u"%1 items need attention", count);
}

QString artistSummary(qint64 albums, qint64 tracks, ResolvedLanguage language) {
    return isChinese(language) ? with(u"%1 张专辑 - ", albums) + with(u"%1 首歌曲", tracks)
                               : with(u"%1 albums - ", albums) + with(u"%1 tracks", tracks);
}

QString guestSummary(qint64 albums, ResolvedLanguage language) {
    if (isChinese(language))
        return with(u"参与 %1 张专辑", albums);
    return albums == 1 ? u"Appears on 1 album"_s : with(u"Appears on %1 albums", albums);
}

QString discHeading(qint64 disc, ResolvedLanguage language) {
    return with(isChinese(language) ? u"光盘 %1" : u"Disc %1", disc);
}

QString visibleCount(qint64 count, ResolvedLanguage language) {
    return with(isChinese(language) ? u"显示 %1 首" : u"%1 visible", count);
}

QString selectedCount(qint64 count, ResolvedLanguage language) {
    return with(isChinese(language) ? u"已选择 %1 首" : u"%1 selected", count);
}

QString confirmRemoveMissing(qint64 count, ResolvedLanguage language) {
    if (isChinese(language))
        return with(u"从资料库移除 %1 个丢失的曲目？只移除条目，不会删除任何文件。", count);
    return count == 1 ? u"Remove 1 missing track from the library? The entry is removed; no files "
                        u"are deleted."_s
                      : with(u"Remove %1 missing tracks from the library? Entries are removed; no "
                             u"files are deleted.",
                             count);
}

QString confirmRemoveDuplicates(qint64 groups, ResolvedLanguage language) {
    if (isChinese(language))
        return with(u"清理 %1 组重复曲目的多余副本？每组保留一份，不会删除任何文件。", groups);
    return groups == 1 ? u"Remove extra copies in 1 duplicate group? One copy of each is kept; no "
                         u"files are deleted."_s
                       : with(u"Remove extra copies in %1 duplicate groups? One copy of each is "
                              u"kept; no files are deleted.",
                              groups);
}

QString cloudDownloadStarted(qint64 count, ResolvedLanguage language) {
    if (isChinese(language))
        return with(u"正在从 iCloud 下载 %1 首，完成后自动恢复可播放", count);
    return count == 1
               ? u"Downloading 1 track from iCloud - it will be playable shortly"_s
               : with(u"Downloading %1 tracks from iCloud - they will be playable shortly", count);
}

QString playlistCount(qint64 count, ResolvedLanguage language) {
    return with(isChinese(language) ? u"%1 项" : u"%1 items", count);
}

QString foundElsewhere(qint64 count, ResolvedLanguage language) {
    return with(isChinese(language) ? u"%1 个文件已在新位置找到"
                : count == 1        ? u"%1 file found in its new place"
                                    : u"%1 files found in their new places",
                count);
}

QString takenIn(qint64 count, ResolvedLanguage language) {
    return with(isChinese(language) ? u"关注的文件夹中新增 %1 首"
                : count == 1        ? u"%1 new track from your folders"
                                    : u"%1 new tracks from your folders",
                count);
}

QString importResult(qint64 added, qint64 skipped, ResolvedLanguage language) {
    const bool chinese = isChinese(language);
    if (skipped < 1)
        return with(chinese ? u"已加入 %1 项到播放列表" : u"Added %1 to playlist", added);
    if (added == 0)
        return chinese ? u"已在播放列表中"_s : u"Already in playlist"_s;
    return chinese ? with(u"已加入 %1 项，", added) + with(u"跳过 %1 项", skipped)
                   : with(u"Added %1, ", added) + with(u"skipped %1", skipped);
}

QString withLeftOut(const QString& message, qint64 leftOut, ResolvedLanguage language) {
    if (leftOut < 1)
        return message;
    const bool chinese = isChinese(language);
    return message + u" · "_s +
           with(chinese ? u"%1 个其他类型的文件未加入" : u"%1 of other kinds left out", leftOut);
}

QString withMissing(const QString& message, const QStringList& names, ResolvedLanguage language) {
    if (names.isEmpty())
        return message;
    const bool chinese = isChinese(language);
    QString missing = (chinese ? u"找不到：%1"_s : u"Not found: %1"_s).arg(names.front());
    if (names.size() > 1)
        missing += with(chinese ? u" 等 %1 项" : u" and %1 more",
                        chinese ? names.size() : names.size() - 1);
    return message.isEmpty() ? missing : message + u" · "_s + missing;
}

QString addedPlaylists(const QStringList& names, qint64 notFound, qint64 entries, qint64 addresses,
                       ResolvedLanguage language) {
    const bool chinese = isChinese(language);
    QString text =
        names.size() > 1
            ? with(chinese ? u"已加入 %1 个播放列表" : u"Added %1 playlists", names.size())
        : chinese ? u"已加入「"_s + names.value(0) + u"」"_s
                  : u"Added \""_s + names.value(0) + u'"';
    if (notFound > 0)
        text += chinese ? with(u" · %1 项中", entries) + with(u"有 %1 项未找到", notFound)
                        : with(u" · %1", notFound) + with(u" of %1 not found", entries);
    if (addresses > 0)
        text += with(chinese          ? u" · 略过 %1 个网络地址"
                     : addresses == 1 ? u" · 1 network address left out"
                                      : u" · %1 network addresses left out",
                     addresses);
    return text;
}

QString playlistUnreadable(const QString& fileName, ResolvedLanguage language) {
    return isChinese(language) ? u"无法读取列表「"_s + fileName + u"」"_s
                               : u"Can't read the list \""_s + fileName + u'"';
}

QString exportedPlaylist(const QString& name, ResolvedLanguage language) {
    return isChinese(language) ? u"已导出「"_s + name + u"」"_s : u"Exported \""_s + name + u'"';
}

QString playlistNotWritten(const QString& fileName, ResolvedLanguage language) {
    return isChinese(language) ? u"无法写入「"_s + fileName + u"」"_s
                               : u"Can't write \""_s + fileName + u'"';
}

QString sleepTimer(qint64 minutes, ResolvedLanguage language) {
    if (isChinese(language))
        return minutes < 1 ? u"睡眠定时已关闭"_s : with(u"%1 分钟后暂停播放", minutes);
    return minutes < 1    ? u"Sleep timer off"_s
           : minutes == 1 ? u"Playback pauses in 1 minute"_s
                          : with(u"Playback pauses in %1 minutes", minutes);
}

QString stopsAfterCurrent(bool stops, ResolvedLanguage language) {
    if (isChinese(language))
        return stops ? u"播完当前曲目后停止"_s : u"播完当前曲目后继续"_s;
    return stops ? u"Stops after this track"_s : u"Plays on after this track"_s;
}

QString exportedListening(qint64 tracks, ResolvedLanguage language) {
    if (isChinese(language))
        return with(u"已导出 %1 首歌曲的聆听数据", tracks);
    return tracks == 1 ? u"Exported the listening data of 1 track"_s
                       : with(u"Exported the listening data of %1 tracks", tracks);
}

QString importedListening(qint64 found, qint64 away, ResolvedLanguage language) {
    if (isChinese(language))
        return with(u"已导入 %1 首歌曲的聆听数据", found) +
               (away > 0 ? with(u"，另有 %1 首不在资料库中", away) : QString());
    const QString text = found == 1 ? u"Imported the listening data of 1 track"_s
                                    : with(u"Imported the listening data of %1 tracks", found);
    return away > 0 ? text + with(u" · %1 not in the library", away) : text;
}

QString listeningNotRead(const QString& fileName, ResolvedLanguage language) {
    return isChinese(language) ? u"「"_s + fileName + u"」中没有聆听数据"_s
                               : u"No listening data in \""_s + fileName + u'"';
}

QString importStopped(qint64 added, ResolvedLanguage language) {
    const bool chinese = isChinese(language);
    if (added < 1)
        return chinese ? u"已停止导入"_s : u"Import stopped"_s;
    return with(chinese ? u"已停止导入，已加入 %1 项" : u"Import stopped, added %1", added);
}

QString importReading(double part, ResolvedLanguage language) {
    return with(isChinese(language) ? u"正在读取文件… %1%" : u"Reading files… %1%",
                std::lround(std::clamp(part, 0.0, 1.0) * 100));
}

QString timeSpan(qint64 minutes, ResolvedLanguage language) {
    const bool chinese = isChinese(language);
    constexpr qint64 hour = 60;
    constexpr qint64 day = 24 * hour;
    if (minutes < hour)
        return with(chinese ? u"%1 分钟" : u"%1 min", minutes);
    if (minutes < day)
        return with(chinese ? u"%1 小时 " : u"%1 h ", minutes / hour) +
               with(chinese ? u"%1 分钟" : u"%1 min", minutes % hour);
    return with(chinese ? u"%1 天 " : u"%1 d ", minutes / day) +
           with(chinese ? u"%1 小时" : u"%1 h", minutes % day / hour);
}

QString tracksLeft(qint64 count, ResolvedLanguage language) {
    return with(isChinese(language) ? u"还剩 %1 首" : u"%1 left", count);
}

QString albumDuration(qint64 totalMinutes, ResolvedLanguage language) {
    const bool chinese = isChinese(language);
    if (totalMinutes < 60)
        return with(chinese ? u"%1 分钟" : u"%1 min", totalMinutes);
    return with(chinese ? u"%1 小时 " : u"%1h ", totalMinutes / 60) +
           with(chinese ? u"%1 分钟" : u"%1m", totalMinutes % 60);
}

QString albumLength(double seconds, ResolvedLanguage language) {
    constexpr double minute = 60;
    constexpr double longest = 1e15; // nonsense must not overflow
    if (!(seconds < minute))
        return albumDuration(static_cast<qint64>(std::min(seconds, longest) / minute), language);
    const double shown = std::max(1.0, std::floor(seconds));
    return with(isChinese(language) ? u"%1 秒" : u"%1 sec", static_cast<qint64>(shown));
}

QString loveTrack(const QString& trackTitle, ResolvedLanguage language) {
    return (isChinese(language) ? u"喜欢“%1”"_s : u"Love “%1”"_s).arg(trackTitle);
}

QString dialogTitle(const QString& command) {
    qsizetype end = command.size();
    while (end > 0 && (command[end - 1] == u'.' || command[end - 1] == u'…'))
        --end;
    return command.first(end);
}

QString trackCount(qint64 count, ResolvedLanguage language) {
    if (isChinese(language))
        return with(u"%1 首", count);
    return count == 1 ? u"1 track"_s : with(u"%1 tracks", count);
}

L10nKey placeName(SidebarItem item) {
    switch (item) {
    case SidebarItem::library:
        return L10nKey::library;
    case SidebarItem::albums:
        return L10nKey::albums;
    case SidebarItem::artists:
        return L10nKey::artists;
    case SidebarItem::tracks:
        return L10nKey::tracks;
    case SidebarItem::loved:
        return L10nKey::loved;
    case SidebarItem::recentlyAdded:
        return L10nKey::recentlyAdded;
    case SidebarItem::recentlyPlayed:
        return L10nKey::recentlyPlayed;
    case SidebarItem::mostPlayed:
        return L10nKey::mostPlayed;
    case SidebarItem::topRated:
        return L10nKey::topRated;
    case SidebarItem::liveList: // it has a name of its own
        break;
    }
    return L10nKey::library;
}

QString languageName(AppLanguage setting, ResolvedLanguage language) {
    switch (setting) {
    case AppLanguage::english:
        return u"English"_s;
    case AppLanguage::simplifiedChinese:
        return u"中文"_s;
    case AppLanguage::system:
        break;
    }
    return isChinese(language) ? u"自动"_s : u"Auto"_s;
}

} // namespace L10n

} // namespace halvane
