// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QIODevice>

#include <functional>

namespace halvane {

/// Bytes that can be read anywhere. It is used on one thread at a time.
struct ByteSource {
    qint64 size = 0;
    /// Up to `length` bytes from `offset` on; fewer at the end, or where reading fails.
    std::function<QByteArray(qint64 offset, qint64 length)> read;
};

/// A file that is open. It must outlive the source.
inline ByteSource byteSource(QIODevice& file) {
    return {file.size(), [&file](qint64 offset, qint64 length) {
                const bool isThere = offset < file.size() && file.seek(offset);
                return isThere ? file.read(length) : QByteArray();
            }};
}

} // namespace halvane
