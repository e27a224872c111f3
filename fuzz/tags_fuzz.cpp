// SPDX-License-Identifier: MIT
// Reads the tags, stream facts and picture of a file made of the input.
#include "metadata/track_metadata_loader.h"
#include "scratch_file.h"

using namespace halvane;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const FileUrl file(fuzz::writeScratchFile(data, size));
    const QueueItem item = TrackMetadataLoader::queueItem(file, {});
    if (item.coverImageData)
        (void)item.coverImageData->read();
    // What the rest of the program relies on, whatever the file says.
    if (item.artist.isEmpty() || item.title.isEmpty() || item.duration.isEmpty() || item.year < 0)
        std::abort();
    return 0;
}
