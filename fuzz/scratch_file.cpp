// SPDX-License-Identifier: MIT
#include "scratch_file.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <cstdlib>

namespace halvane::fuzz {

QString scratchFolder() {
    static const QTemporaryDir folder(QStringLiteral("/dev/shm/halvane-fuzz-XXXXXX"));
    if (!folder.isValid())
        std::abort();
    return folder.path();
}

QString writeScratchFile(const std::uint8_t* data, std::size_t size) {
    const QString path = scratchFolder() + QStringLiteral("/input." FUZZ_EXTENSION);
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate) ||
        file.write(reinterpret_cast<const char*>(data), qint64(size)) != qint64(size))
        std::abort();
    return path;
}

} // namespace halvane::fuzz
