// SPDX-License-Identifier: MIT
// Reads the input as a list, and writes and reads again what was in it.
#include "metadata/playlists/playlist_file.h"
#include "metadata/playlists/playlist_writer.h"

#include <cstdint>
#include <cstdlib>

using namespace halvane;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QString path = QStringLiteral("/lists/input." FUZZ_EXTENSION);
    const auto list = readPlaylist(
        QByteArray(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size)), path);
    if (!list)
        return 0;
    std::vector<WrittenEntry> entries;
    for (const PlaylistEntry& entry : list->entries) {
        for (const QString& location : entry.paths)
            if (!location.startsWith(u'/') || location.contains(QChar(0)))
                std::abort();
        if (!entry.paths.empty())
            entries.push_back({entry.paths.front(), {}, entry.label, entry.seconds});
    }
    const auto again = readPlaylist(playlistContents(path, list->name, entries), path);
    if (list->name.isEmpty() || !again || again->entries.size() != entries.size())
        std::abort();
    return 0;
}
