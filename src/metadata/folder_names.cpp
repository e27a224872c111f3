// SPDX-License-Identifier: MIT
#include "metadata/folder_names.h"

#include "metadata/track_metadata_loader.h"

#include <QCollator>
#include <QRegularExpression>

#include <algorithm>
#include <array>
#include <dirent.h>
#include <memory>
#include <span>
#include <vector>

namespace halvane {

using namespace Qt::StringLiterals;

namespace {

bool contains(std::span<const QStringView> names, const QString& name) {
    return std::find(names.begin(), names.end(), name) != names.end();
}

// A folder's name without the underscores and the leading number that rippers write.
QString cleanedFolderName(const QString& folder) {
    // Never destroyed: a reader that is left behind may still run when the program ends.
    static const auto& numberPrefix = *new QRegularExpression(
        u"^\\d+\\s*[-_. ]\\s*"_s, QRegularExpression::UseUnicodePropertiesOption);
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
    static constexpr std::array<QStringView, 7> extensions{u"jpg", u"jpeg", u"png", u"webp",
                                                           u"tif", u"tiff", u"heic"};
    const qsizetype dot = fileName.lastIndexOf(QLatin1Char('.'));
    return dot > 0 && contains(extensions, fileName.mid(dot + 1).toLower());
}

// The disc that a folder's name tells.
std::optional<quint16> discOf(const QString& folder) {
    QStringView name = QStringView(folder).sliced(folder.lastIndexOf(u'/') + 1);
    for (const QStringView word : {u"cd", u"disc", u"disk"}) {
        if (!name.startsWith(word, Qt::CaseInsensitive))
            continue;
        name = name.sliced(word.size());
        while (!name.isEmpty() && QStringView(u" _-.").contains(name.front()))
            name = name.sliced(1);
        qsizetype end = 0;
        while (end < name.size() && name.at(end) >= u'0' && name.at(end) <= u'9')
            ++end;
        // "CD 80s Hits" and "CD 1998" are no discs.
        const bool isWhole = end < name.size() ? !name.at(end).isLetterOrNumber() : true;
        const quint16 number = isWhole && end <= 2 ? name.first(end).toUShort() : 0;
        return number > 0 ? std::optional(number) : std::nullopt;
    }
    return std::nullopt;
}

// None where the folder can't be listed.
std::optional<std::vector<QString>> imagesIn(const QString& folder) {
    std::vector<QString> images;
    const std::unique_ptr<DIR, int (*)(DIR*)> entries(::opendir(folder.toUtf8().constData()),
                                                      ::closedir);
    if (!entries)
        return std::nullopt;
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
        // Not every desktop can read HEIC, and beside it often lies the same in a common format.
        std::stable_partition(images.begin(), images.end(), [](const QString& name) {
            return !name.endsWith(u".heic"_s, Qt::CaseInsensitive);
        });
    }
    return images;
}

FolderCover coverIn(const QString& folder) {
    static constexpr std::array<QStringView, 6> preferred{u"cover", u"folder",  u"front",
                                                          u"album", u"artwork", u"封面"};
    const auto images = imagesIn(folder);
    if (!images)
        return {};
    const auto urlOf = [&](const QString& name) {
        return FileUrl(folder == u"/"_s ? folder + name : folder + u"/"_s + name);
    };
    for (const QStringView wanted : preferred)
        for (const QString& image : *images)
            if (baseName(image).compare(wanted, Qt::CaseInsensitive) == 0)
                return {true, urlOf(image)};
    return {true, images->size() == 1 ? std::optional(urlOf(images->front())) : std::nullopt};
}

} // namespace

QString folderOf(const QString& path) {
    const qsizetype slash = path.lastIndexOf(QLatin1Char('/'));
    return slash <= 0 ? u"/"_s : path.left(slash);
}

std::optional<QString> folderAboveDisc(const QString& folder) {
    return discOf(folder) ? std::optional(folderOf(folder)) : std::nullopt;
}

FolderCover lookForCover(const QString& folder) {
    const FolderCover own = coverIn(folder);
    const auto above = folderAboveDisc(folder);
    return own.isKnown && !own.file && above ? coverIn(*above) : own;
}

std::optional<FileUrl> FolderCovers::cover(const QString& folder) {
    {
        const std::lock_guard lock(m_mutex);
        const auto known = m_covers.constFind(folder);
        if (known != m_covers.cend())
            return *known;
    }
    // Two threads that list one folder at the same time find the same.
    const auto found = lookForCover(folder).file;
    const std::lock_guard lock(m_mutex);
    return *m_covers.insert(folder, found);
}

namespace TrackMetadataLoader {

std::optional<FileUrl> folderArtworkURL(const FileUrl& near) {
    return lookForCover(folderOf(near.path())).file;
}

std::optional<QString> folderAlbumName(const FileUrl& file) {
    const QString folder = folderOf(file.path());
    const QString name = folder == u"/"_s ? QString() : cleanedFolderName(folder);
    return name.isEmpty() ? std::nullopt : std::optional(name);
}

std::optional<QString> folderArtistName(const FileUrl& file, const QString& album) {
    static constexpr std::array<QStringView, 15> ignored{
        u"audio",   u"desktop", u"documents", u"downloads", u"tessolin",
        u"halvane", u"itunes",  u"media",     u"music",     u"musics",
        u"音频",    u"音乐",    u"下载",      u"桌面",      u"文稿"};
    const QString name = cleanedFolderName(folderOf(folderOf(file.path())));
    const QString lowered = name.toLower();
    if (name.isEmpty() || name == u"/"_s || name == u"."_s ||
        lowered == album.trimmed().toLower() || contains(ignored, lowered))
        return std::nullopt;
    return name;
}

std::optional<quint16> folderDiscNumber(const FileUrl& file) {
    return discOf(folderOf(file.path()));
}

} // namespace TrackMetadataLoader

} // namespace halvane
