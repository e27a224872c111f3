// SPDX-License-Identifier: MIT
#include "metadata/readers/raw_aac_reader.h"

#include "libav/container_figures.h"
#include "metadata/readers/byte_order.h"

#include <algorithm>

namespace halvane {

namespace {

constexpr double sampleRates[] = {96000, 88200, 64000, 48000, 44100, 32000, 24000,
                                  22050, 16000, 12000, 11025, 8000,  7350};

double rateOfIndex(unsigned int index) {
    return index < std::size(sampleRates) ? sampleRates[index] : 0;
}

struct AdtsFrame {
    qint64 size = 0;
    int samples = 0;
    double sampleRate = 0;
};

AdtsFrame adtsFrameAt(BoundedFile& file, qint64 offset) {
    unsigned char h[7];
    if (file.read(offset, sizeof h, reinterpret_cast<char*>(h)) != sizeof h || h[0] != 0xff ||
        (h[1] & 0xf6) != 0xf0)
        return {};
    AdtsFrame frame;
    frame.size = (h[3] & 3) << 11 | h[4] << 3 | h[5] >> 5;
    frame.samples = 1024 * ((h[6] & 3) + 1);
    frame.sampleRate = rateOfIndex(h[2] >> 2 & 15);
    return frame.size >= 7 && frame.sampleRate > 0 ? frame : AdtsFrame{};
}

// Where two frames follow one another, within the first bytes.
qint64 firstAdtsFrame(BoundedFile& file, qint64 from) {
    constexpr qint64 searched = 64 << 10;
    for (qint64 offset = from; offset < from + searched && offset + 7 <= file.size(); ++offset) {
        const AdtsFrame frame = adtsFrameAt(file, offset);
        if (frame.size == 0)
            continue;
        const qint64 next = offset + frame.size;
        if (next == file.size() || adtsFrameAt(file, next).size > 0)
            return offset;
    }
    return -1;
}

StreamFacts readAdts(BoundedFile& file, qint64 from) {
    constexpr int mostFrames = 20'000; // about eight minutes
    StreamFacts facts;
    const qint64 start = firstAdtsFrame(file, from);
    if (start < 0)
        return facts;
    qint64 offset = start;
    for (int frames = 0; frames < mostFrames; ++frames) {
        const AdtsFrame frame = adtsFrameAt(file, offset);
        if (frame.size == 0 || offset + frame.size > file.size())
            break;
        facts.sampleRate = frame.sampleRate;
        facts.seconds += frame.samples / frame.sampleRate;
        offset += frame.size;
    }
    if (adtsFrameAt(file, offset).size > 0 && offset > start) {
        facts.seconds *=
            static_cast<double>(file.size() - start) / static_cast<double>(offset - start);
        facts.guessedFrom = start;
    }
    if (facts.sampleRate > 0) // what the encoder put in front
        facts.seconds = std::max(facts.seconds - adtsDelay / facts.sampleRate, 0.0);
    return facts;
}

StreamFacts readAdif(BoundedFile& file, qint64 from) {
    const QByteArray bytes = file.read(from + 4, 32);
    qsizetype position = 0;
    const auto bits = [&](int count) {
        quint32 value = 0;
        for (; count > 0; --count, ++position) {
            const int byte = position / 8 < bytes.size() ? bytes[position / 8] : 0;
            value = value << 1 | (byte >> (7 - position % 8) & 1);
        }
        return value;
    };
    if (bits(1))
        bits(72); // copyright id
    bits(2);      // original or copy, home
    const bool isVariable = bits(1);
    const double bitrate = bits(23);
    bits(4); // number of programs, less one
    if (!isVariable)
        bits(20); // buffer fullness
    bits(4 + 2);  // element instance tag, object type
    StreamFacts facts;
    facts.sampleRate = rateOfIndex(bits(4));
    if (bitrate > 0 && facts.sampleRate > 0)
        facts.seconds = static_cast<double>(file.size() - from) * 8 / bitrate;
    return facts;
}

} // namespace

StreamFacts readRawAac(BoundedFile& file, const ContainerFacts& facts) {
    return facts.container == Container::adif ? readAdif(file, facts.audioStart)
                                              : readAdts(file, facts.audioStart);
}

} // namespace halvane
