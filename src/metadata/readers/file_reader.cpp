// SPDX-License-Identifier: MIT
#include "metadata/readers/file_reader.h"

#include "libav/container.h"
#include "libav/container_figures.h"
#include "libav/frame_walk.h"
#include "metadata/identity/identify_sound.h"
#include "metadata/readers/bounded_source.h"
#include "metadata/readers/libav_reader.h"
#include "metadata/readers/raw_aac_reader.h"
#include "metadata/readers/taglib_reader.h"

#include <QFileInfo>

#include <cmath>
#include <exception>
#include <limits>
#include <utility>

namespace halvane {

namespace {

// Stream facts that a hostile header could have made up are worse than none.
bool isCredible(const StreamFacts& facts) {
    constexpr double longest = 366.0 * 24 * 3600;
    return std::isfinite(facts.seconds) && facts.seconds >= 0 && facts.seconds < longest &&
           facts.sampleRate >= 0 && facts.sampleRate < 1e7 && facts.bitsPerSample >= 0 &&
           facts.bitsPerSample <= 64;
}

// With junk in front of the first frame, or with nothing behind the tags, the name is all there is
// to tell a container by.
ContainerFacts containerOf(BoundedFile& file, const QString& lowerCasedExtension) {
    ContainerFacts facts = detectContainer([&file](qint64 offset, OpeningBytes& bytes) {
        return file.read(offset, std::ssize(bytes), bytes.data()) == std::ssize(bytes);
    });
    if (facts.container != Container::other)
        return facts;
    if (lowerCasedExtension == QLatin1String("mp3"))
        facts.container = Container::mpeg;
    else if (lowerCasedExtension == QLatin1String("aac"))
        facts.container = Container::adts;
    return facts;
}

FileMetadata readMetadata(BoundedFile& file, const ContainerFacts& facts) {
    if (facts.container == Container::caf || facts.container == Container::other)
        return readWithLibav(file, facts.container);
    FileMetadata metadata = readWithTagLib(file, facts);
    if (facts.container == Container::adts || facts.container == Container::adif)
        metadata.stream = readRawAac(file, facts);
    if (metadata.stream.isComplete() || file.isExhausted())
        return metadata;
    // Fragmented MP4, odd encodings in WAV and AIFF, files under a wrong name.
    FileMetadata second = readWithLibav(file, facts.container);
    if (second.stream.isComplete())
        metadata.stream = second.stream;
    return metadata;
}

} // namespace

AudioFileReading readAudioFile(const QString& path, const ReadingLimits& limits) {
    AudioFileReading reading;
    BoundedFile file(path, limits);
    reading.isMissing = file.isMissing();
    if (!file.isOpen())
        return reading;
    reading.fileSize = file.size();
    reading.modificationDate = file.modificationDate();
    if (file.size() == 0)
        return reading;
    try {
        const auto facts = containerOf(file, QFileInfo(path).suffix().toLower());
        reading.metadata = readMetadata(file, facts);
        reading.metadata.tags.decideEncodings(path);
        reading.identity = statedIdentity(file, facts);
    } catch (const std::exception&) {
        // A parser ran out of memory or of range. The file yields what its name says.
        reading.metadata = {};
    }
    if (!isCredible(reading.metadata.stream))
        reading.metadata.stream = {};
    reading.isLate = file.isLate();
    reading.isFinished = reading.metadata.stream.guessedFrom < 0 && reading.identity.isKnown();
    return reading;
}

namespace {

// Nobody waits for these readings.
constexpr ReadingLimits atLeisure{.totalBytes = std::numeric_limits<qint64>::max(),
                                  .reads = std::numeric_limits<int>::max(),
                                  .time = std::chrono::minutes(1)};

void countLength(const QString& path, StreamFacts& stream) {
    if (stream.guessedFrom < 0)
        return;
    BoundedFile file(path, atLeisure);
    const ByteSource bytes = byteSource(file);
    const QByteArray opening = file.read(stream.guessedFrom, 2);
    const bool isAdts = opening.size() == 2 && (opening[1] & 0x06) == 0; // of no MPEG audio layer
    const FrameStream kind = isAdts ? FrameStream::adts : FrameStream::mpegLayer3;
    const std::int64_t from = std::exchange(stream.guessedFrom, -1);
    constexpr qint64 longestFrame = 2881;
    const auto figures = isAdts ? std::nullopt : mp3Figures(file.read(from, longestFrame));
    // The guess is right where all frames are alike, and nothing was joined.
    if (!file.isOpen() || (!figures && hasEvenFrames(bytes, kind, from)))
        return;
    constexpr int lowestRateOfLongBlocks = 32'000; // of MPEG 1
    const int block = isAdts ? 1024 : stream.sampleRate >= lowestRateOfLongBlocks ? 1152 : 576;
    const auto count = walkFrames(bytes, kind, from, [](std::int64_t, std::int64_t) {});
    if (!count || file.isExhausted())
        return;
    std::int64_t frames = *count * block - (isAdts ? adtsDelay : 0);
    if (figures)
        frames = mp3Extent(*figures, frames - block).length;
    stream.seconds = static_cast<double>(frames) / stream.sampleRate;
}

SoundIdentity identityOf(const QString& path) {
    BoundedFile file(path, atLeisure);
    if (!file.isOpen() || file.size() == 0)
        return {};
    try {
        return identifySound(file, containerOf(file, QFileInfo(path).suffix().toLower()));
    } catch (const std::exception&) {
        return {};
    }
}

} // namespace

void finishReading(const QString& path, AudioFileReading& reading) {
    if (reading.isFinished)
        return;
    countLength(path, reading.metadata.stream);
    if (!reading.identity.isKnown())
        reading.identity = identityOf(path);
    reading.isFinished = true;
}

} // namespace halvane
