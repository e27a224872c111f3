// SPDX-License-Identifier: MIT
#include "library/desktop/artwork_export.h"

#include "model/picture_file.h"
#include "presentation/cover_image.h"

#include <QCryptographicHash>
#include <QDir>
#include <QSaveFile>

namespace halvane {

using namespace Qt::StringLiterals;

namespace {

// The desktop may show a picture long after its track has ended.
constexpr int keptPictures = 64;

// The desktop is handed only what the windows would show.
bool isPicture(const QString& path) {
    return !coverFormat(readPictureFile(path).bytes).isEmpty();
}

void dropOldPictures(const QDir& folder) {
    const auto newestFirst = folder.entryInfoList(QDir::Files, QDir::Time);
    for (qsizetype i = keptPictures; i < newestFirst.size(); ++i)
        QFile::remove(newestFirst[i].filePath());
}

std::optional<QString> written(const QByteArray& bytes, const QString& folder) {
    const auto format = coverFormat(bytes);
    if (format.isEmpty())
        return {};
    const auto name = QCryptographicHash::hash(bytes, QCryptographicHash::Sha256).toHex();
    const QDir target(folder);
    const auto path = target.filePath(QString::fromLatin1(name + '.' + format));
    if (QFile::exists(path))
        return path;
    QSaveFile file(path);
    if (!target.mkpath(u"."_s) || !file.open(QIODevice::WriteOnly) ||
        file.write(bytes) != bytes.size() || !file.commit())
        return {};
    dropOldPictures(target);
    return path;
}

} // namespace

std::optional<QString> exportedArtwork(const QueueItem& item, const QString& folder) {
    if (item.coverImageData) {
        const auto file = item.coverImageData->filePath();
        if (!file.isEmpty() && isPicture(file))
            return file;
        if (auto path = written(item.coverImageData->read(), folder))
            return path;
    }
    if (item.coverURL && isPicture(item.coverURL->path()))
        return item.coverURL->path();
    return {};
}

} // namespace halvane
