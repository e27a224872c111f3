// SPDX-License-Identifier: MIT
#pragma once

#include "libav/byte_source.h"
#include "metadata/readers/bounded_file.h"

namespace halvane {

/// A bounded file, for readers that take any file. It must outlive the source.
inline ByteSource byteSource(BoundedFile& file) {
    return {file.size(),
            [&file](qint64 offset, qint64 length) { return file.read(offset, length); }};
}

} // namespace halvane
