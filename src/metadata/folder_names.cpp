// SPDX-License-Identifier: MIT
#include "metadata/folder_names.h"

#include "metadata/track_metadata_loader.h"

#include <QCollator>
#include <QRegularExpression>
#include <QSet>

#include <algorithm>
#include <dirent.h>
#include <memory>
#include <vector>

namespace halvane {

using namespace Qt::StringLiterals;

namespace {

// A folder's name without the underscores and the leading number that rippers write.
QString cleanedFolderName(const QString& folder) {
    static const QRegularExpression numberPrefix(u"^\\d+\\s*[-_. ]\\s*"_s,
                                                 QRegularExpression::UseUnicodePropertiesOption);
    QString name = folder == u"/"_s ? folder : folder.section(QLatin1Char('/'), -1);
    name.replace(QLatin1Char('_'), QLatin1Char(' '));
    name.remove(numberPrefix);
    return name.simplified();
}

QString baseName(const QString& fileName) {
    const qsizetype dot = fileName.lastIndexOf(QLatin1Char('.'));
    return dot > 0 ? fileName.left(dot) : fileName;
}

bool isImage(const QString& fileName) {
    static const QSet<QString> extensions{u"jpg"_s, u"jpeg"_s, u"png"_s, u"webp"_s,
                                          u"tif"_s, u"tiff"_s, u"heic"_s};
    const qsizetype dot = fileName.lastIndexOf(QLatin1Char('.'));
    return dot > 0 && extensions.contains(fileName.mid(dot + 1).toLower());
}

std::vector<QString> imagesIn(const QString& folder) {
    std::vector<QString> images;
    const std::unique_ptr<DIR, int (*)(DIR*)> entries(::opendir(folder.toUtf8().constData()),
                                                      ::closedir);
    if (!entries)
        return images;
    while (const dirent* entry = ::readdir(entries.get())) {
        if (entry->d_name[0] == '.')
            continue;
        const QByteArray bytes(entry->d_name);
        const QString name = QString::fromUtf8(bytes);
        if (bytes.isValidUtf8() && isImage(name))
            images.push_back(name);
    }
    if (images.size() > 1) {
        QCollator collator;
        collator.setCaseSensitivity(Qt::CaseInsensitive);
        std::sort(images.begin(), images.end(), [&](const QString& a, const QString& b) {
            const int order = collator.compare(a, b);
            return order != 0 ? order < 0 : a < b;
        });
    }
    return images;
}

} // namespace

QString folderOf(const QString& path) {
    const qsizetype slash = path.lastIndexOf(QLatin1Char('/'));
    return slash <= 0 ? u"/"_s : path.left(slash);
}

std::optional<FileUrl> coverInFolder(const QString& folder) {
    static const QString preferred[] = {u"cover"_s, u"folder"_s,  u"front"_s,
                                        u"album"_s, u"artwork"_s, u"封面"_s};
    const std::vector<QString> images = imagesIn(folder);
    const auto urlOf = [&](const QString& name) {
        return FileUrl(folder == u"/"_s ? folder + name : folder + u"/"_s + name);
    };
    for (const QString& wanted : preferred)
        for (const QString& image : images)
            if (baseName(image).compare(wanted, Qt::CaseInsensitive) == 0)
                return urlOf(image);
    return images.size() == 1 ? std::optional(urlOf(images.front())) : std::nullopt;
}

std::optional<FileUrl> FolderCovers::cover(const QString& folder) {
    {
        const std::lock_guard lock(m_mutex);
        const auto known = m_covers.constFind(folder);
        if (known != m_covers.cend())
            return *known;
    }
    // Two threads that list one folder at the same time find the same.
    const auto found = coverInFolder(folder);
    const std::lock_guard lock(m_mutex);
    return *m_covers.insert(folder, found);
}

namespace TrackMetadataLoader {

std::optional<FileUrl> folderArtworkURL(const FileUrl& near) {
    return coverInFolder(folderOf(near.path()));
}

std::optional<QString> folderAlbumName(const FileUrl& file) {
    const QString folder = folderOf(file.path());
    const QString name = folder == u"/"_s ? QString() : cleanedFolderName(folder);
    return name.isEmpty() ? std::nullopt : std::optional(name);
}

std::optional<QString> folderArtistName(const FileUrl& file, const QString& album) {
    static const QSet<QString> ignored{u"audio"_s,    u"desktop"_s, u"documents"_s, u"downloads"_s,
                                       u"tessolin"_s, u"halvane"_s, u"itunes"_s,    u"media"_s,
                                       u"music"_s,    u"musics"_s,  u"音频"_s,      u"音乐"_s,
                                       u"下载"_s,     u"桌面"_s,    u"文稿"_s};
    const QString name = cleanedFolderName(folderOf(folderOf(file.path())));
    const QString lowered = name.toLower();
    if (name.isEmpty() || name == u"/"_s || name == u"."_s ||
        lowered == album.trimmed().toLower() || ignored.contains(lowered))
        return std::nullopt;
    return name;
}

} // namespace TrackMetadataLoader

} // namespace halvane
