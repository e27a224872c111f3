// SPDX-License-Identifier: MIT
#include "model/file_stamp.h"

#include <sys/stat.h>

namespace halvane {

namespace {

FileStamp stampOf(const struct stat& facts) {
    if (!S_ISREG(facts.st_mode))
        return {};
    constexpr qint64 second = 1'000'000'000;
    return {facts.st_dev, facts.st_ino, facts.st_size,
            facts.st_mtim.tv_sec * second + facts.st_mtim.tv_nsec};
}

} // namespace

FileStamp fileStamp(const QString& path) {
    struct stat facts;
    return ::stat(path.toUtf8().constData(), &facts) == 0 ? stampOf(facts) : FileStamp();
}

FileStamp openFileStamp(int descriptor) {
    struct stat facts;
    return ::fstat(descriptor, &facts) == 0 ? stampOf(facts) : FileStamp();
}

} // namespace halvane
