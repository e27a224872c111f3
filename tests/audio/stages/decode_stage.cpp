// SPDX-License-Identifier: MIT
#include "audio/files/audio_file.h"
#include "audio/stages/raw_stream.h"

#include <vector>

// Decodes a file, from a frame on, to standard output; says the format on standard error.
int main(int argc, char** argv) {
    using namespace halvane;
    stages::expectArguments(argc, 1, "decode_stage FILE [FROM_FRAME] > out.f32");
    const auto opened = AudioFile::open(QString::fromLocal8Bit(argv[1]));
    if (!opened) {
        std::fprintf(stderr, "%s\n", qPrintable(opened.failure().text));
        return 1;
    }
    AudioFile& file = **opened;
    const auto& format = file.format();
    std::fprintf(stderr, "%d Hz, %d channels, %lld frames\n", format.sampleRate, format.channels,
                 static_cast<long long>(file.lengthFrames()));
    file.seek(argc > 2 ? std::atoll(argv[2]) : 0);
    std::vector<float> block(std::size_t(format.channels) * 4096);
    while (const auto frames = file.read(block.data(), 4096))
        std::fwrite(block.data(), sizeof(float), frames * std::size_t(format.channels), stdout);
    return 0;
}
