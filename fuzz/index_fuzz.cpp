// SPDX-License-Identifier: MIT
// Loads the input as the library's index, and saves and loads again what was in it.
#include "metadata/cache/metadata_cache.h"
#include "scratch_file.h"

#include <QFile>

#include <cstdlib>

using namespace halvane;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QString written = fuzz::writeScratchFile(data, size);
    const QString index = fuzz::scratchFolder() + QStringLiteral("/library-cache.json");
    QFile::remove(index);
    QFile::rename(written, index);
    const MetadataCache cache(fuzz::scratchFolder());
    const MetadataIndex known = cache.loadIndex();
    for (auto it = known.records().cbegin(); it != known.records().cend(); ++it)
        if (it.key() != it.value()->path)
            std::abort();
    return 0;
}
