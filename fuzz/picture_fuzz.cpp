// SPDX-License-Identifier: MIT
// Decodes a cover file made of the input, at the size of a tile.
#include "model/picture_file.h"
#include "presentation/cover_image.h"
#include "scratch_file.h"

#include <cstdlib>

using namespace halvane;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QByteArray bytes = readPictureFile(fuzz::writeScratchFile(data, size)).bytes;
    constexpr QSize tile(200, 200);
    const QImage cover = decodeCover(bytes, tile);
    // What the cover cache and the textures rely on.
    if (!cover.isNull() && (coverFormat(bytes).isEmpty() || cover.sizeInBytes() > 200'000'000))
        std::abort();
    return 0;
}
