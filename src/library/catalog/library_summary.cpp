// SPDX-License-Identifier: MIT
#include "library/catalog/library_summary.h"

#include "model/file_size.h"

using namespace Qt::StringLiterals;

namespace halvane {

QString librarySummary(std::size_t tracks, std::size_t albums, qint64 bytes,
                       ResolvedLanguage language) {
    const QString size = byteCountText(bytes);
    if (language == ResolvedLanguage::simplifiedChinese)
        return u"已索引 %1 首歌曲 - %2 张专辑 - %3"_s.arg(tracks).arg(albums).arg(size);
    return u"%1 tracks - %2 albums - %3 indexed"_s.arg(tracks).arg(albums).arg(size);
}

} // namespace halvane
