// SPDX-License-Identifier: MIT
// Prints what the library reads of each file and what the engine plays of it, as an object of JSON
// a line: {"record": ... as in the index, "engine": {"seconds", "sampleRate", "channels"}}.
#include "audio/files/audio_file.h"
#include "metadata/cache/cached_track_metadata.h"
#include "metadata/track_metadata_loader.h"

#include <cstdio>

using namespace halvane;

namespace {

QByteArray engineJson(const QString& path) {
    const auto opened = AudioFile::open(path);
    if (!opened)
        return "null";
    const AudioFile& file = **opened;
    return "{\"seconds\":" + QByteArray::number(file.durationSeconds(), 'g', 17) +
           ",\"sampleRate\":" + QByteArray::number(file.format().sampleRate) +
           ",\"channels\":" + QByteArray::number(file.format().channels) + '}';
}

} // namespace

int main(int argc, char** argv) {
    std::vector<FileUrl> files;
    for (int i = 1; i < argc; ++i)
        files.emplace_back(QString::fromLocal8Bit(argv[i]));
    TrackMetadataLoader::Accompaniment with;
    with.isThorough = true;
    for (const QueueItem& item : TrackMetadataLoader::queueItems(files, {}, with)) {
        QByteArray record;
        appendJson(record, CachedTrackMetadata(item, item.path()));
        std::puts("{\"record\":" + record + ",\"engine\":" + engineJson(item.path()) + '}');
    }
    return 0;
}
