// SPDX-License-Identifier: MIT
#include "presentation/l10n.h"

#include "platform/session/preferred_languages.h"

#include <array>

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

QString downloadingTrack(const QString& trackTitle, ResolvedLanguage language) {
    return isChinese(language) ? u"正在从 iCloud 下载「"_s + trackTitle + u"」"_s
                               : u"Downloading \""_s + trackTitle + u"\" from iCloud"_s;
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

QString visibleCount(qint64 count, ResolvedLanguage language) {
    return with(isChinese(language) ? u"显示 %1 首" : u"%1 visible", count);
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

QString importResult(qint64 added, qint64 skipped, ResolvedLanguage language) {
    const bool chinese = isChinese(language);
    if (skipped < 1)
        return with(chinese ? u"已加入 %1 项到播放列表" : u"Added %1 to playlist", added);
    if (added == 0)
        return chinese ? u"已在播放列表中"_s : u"Already in playlist"_s;
    return chinese ? with(u"已加入 %1 项，", added) + with(u"跳过 %1 项", skipped)
                   : with(u"Added %1, ", added) + with(u"skipped %1", skipped);
}

QString albumDuration(qint64 totalMinutes, ResolvedLanguage language) {
    const bool chinese = isChinese(language);
    if (totalMinutes < 60)
        return with(chinese ? u"%1 分钟" : u"%1 min", totalMinutes);
    return with(chinese ? u"%1 小时 " : u"%1h ", totalMinutes / 60) +
           with(chinese ? u"%1 分钟" : u"%1m", totalMinutes % 60);
}

QString trackCount(qint64 count, ResolvedLanguage language) {
    if (isChinese(language))
        return with(u"%1 首", count);
    return count == 1 ? u"1 track"_s : with(u"%1 tracks", count);
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
