// SPDX-License-Identifier: MIT
#include "library/import/known_twins.h"

#include "metadata/parallel/look_at_each.h"
#include "model/file_stamp.h"

namespace halvane {

namespace {

// The user waits for the first sound.
constexpr std::chrono::milliseconds patience{2000};

QString nameOf(const QString& path) {
    return path.sliced(path.lastIndexOf(u'/') + 1);
}

} // namespace

QHash<QString, QString> knownTwins(const std::vector<FileUrl>& files, const QSet<QString>& known,
                                   const std::stop_token& stop) {
    QSet<QString> names; // of the files that are not known by their paths
    for (const FileUrl& file : files)
        if (!known.contains(file.standardizedPath()))
            names.insert(nameOf(file.standardizedPath()));
    QStringList knownPaths;
    QSet<QString> shared;
    for (const QString& path : known) {
        if (const QString name = nameOf(path); names.contains(name)) {
            knownPaths.append(path);
            shared.insert(name);
        }
    }
    knownPaths.sort(); // the same twin each time
    QStringList freshPaths;
    for (const FileUrl& file : files)
        if (const QString& path = file.standardizedPath();
            shared.contains(nameOf(path)) && !known.contains(path))
            freshPaths.append(path);

    const auto knownStamps = lookAtEach<FileStamp>(knownPaths, fileStamp, stop, patience);
    const auto freshStamps = lookAtEach<FileStamp>(freshPaths, fileStamp, stop, patience);
    QHash<std::pair<quint64, quint64>, QString> knownByFile; // by device and inode
    for (qsizetype i = 0; i < knownPaths.size(); ++i)
        if (const auto& stamp = knownStamps[static_cast<std::size_t>(i)]; stamp && stamp->inode > 0)
            knownByFile.insert({stamp->device, stamp->inode}, knownPaths[i]);
    QHash<QString, QString> twins;
    for (qsizetype i = 0; i < freshPaths.size(); ++i) {
        const auto& stamp = freshStamps[static_cast<std::size_t>(i)];
        if (!stamp || stamp->inode == 0)
            continue;
        const auto twin = knownByFile.constFind({stamp->device, stamp->inode});
        if (twin != knownByFile.cend())
            twins.insert(freshPaths[i], *twin);
    }
    return twins;
}

} // namespace halvane
