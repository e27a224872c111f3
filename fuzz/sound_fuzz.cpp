// SPDX-License-Identifier: MIT
// Opens a file made of the input, plays some of it, seeks, and plays some more.
#include "audio/files/audio_file.h"
#include "scratch_file.h"

#include <QLoggingCategory>

#include <vector>

using namespace halvane;

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    QLoggingCategory::setFilterRules(QStringLiteral("*=false"));
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto opened = AudioFile::open(fuzz::writeScratchFile(data, size));
    if (!opened)
        return opened.failure().text.isEmpty() ? std::abort(), 1 : 0;
    AudioFile& file = **opened;
    constexpr std::size_t frames = 4096;
    std::vector<float> block(frames * std::size_t(file.format().channels));
    const auto playSome = [&] {
        for (int blocks = 0; blocks < 16 && file.read(block.data(), frames) > 0; ++blocks) {
        }
    };
    playSome();
    file.seek(file.lengthFrames() / 2);
    playSome();
    file.seek(0);
    playSome();
    return 0;
}
