// SPDX-License-Identifier: MIT
#include "model/picture_file.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <unistd.h>

namespace halvane {

namespace {

QByteArray readAll(int descriptor, qint64 size) {
    constexpr qsizetype block = 1 << 20;
    QByteArray bytes(size, Qt::Uninitialized);
    qsizetype done = 0;
    while (done < bytes.size()) {
        const auto wanted = static_cast<std::size_t>(std::min(block, bytes.size() - done));
        const ssize_t got = ::read(descriptor, bytes.data() + done, wanted);
        if (got < 0 && errno == EINTR)
            continue;
        if (got <= 0)
            break;
        done += got;
    }
    bytes.truncate(done);
    return bytes;
}

} // namespace

PictureFile readPictureFile(const QString& path) {
    // Opening a device can have effects, so the kind is looked at first.
    if (fileStamp(path) == FileStamp())
        return {};
    const int descriptor =
        ::open(path.toUtf8().constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
    if (descriptor < 0)
        return {};
    PictureFile file;
    file.stamp = openFileStamp(descriptor);
    if (file.stamp.bytes > 0 && file.stamp.bytes <= largestPictureFile)
        file.bytes = readAll(descriptor, file.stamp.bytes);
    ::close(descriptor);
    return file;
}

} // namespace halvane
