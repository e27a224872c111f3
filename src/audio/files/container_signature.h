// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

namespace halvane {

/// The name that libavformat has for the container which a file's first bytes, behind ID3v2 tags,
/// show beyond doubt; null where they don't. It spares trying hundreds of readers on ever more
/// bytes, which with a large picture in front of the music takes as long as drawing a frame.
/// `fileName` is in the file system's encoding. Blocks on the disk. Any thread.
const char* containerBySignature(const QByteArray& fileName);

} // namespace halvane
