// SPDX-License-Identifier: MIT
#include "app/missing_files.h"

#include "metadata/parallel/look_at_each.h"

#include <cerrno>
#include <sys/stat.h>

namespace halvane {

namespace {

// The start waits for it.
constexpr std::chrono::milliseconds patience{1000};

bool isMissing(const QString& path) {
    struct stat facts;
    return ::stat(path.toUtf8().constData(), &facts) != 0 && (errno == ENOENT || errno == ENOTDIR);
}

} // namespace

QStringList missingFiles(const QList<QUrl>& files) {
    QStringList paths;
    for (const QUrl& file : files)
        paths.append(file.toLocalFile());
    const auto looks = lookAtEach<bool>(paths, isMissing, {}, patience);
    QStringList missing;
    for (qsizetype i = 0; i < paths.size(); ++i)
        if (looks[static_cast<std::size_t>(i)].value_or(false))
            missing.append(paths[i]);
    return missing;
}

} // namespace halvane
