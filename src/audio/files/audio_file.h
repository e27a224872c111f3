// SPDX-License-Identifier: MIT
#pragma once

#include "base/result.h"
#include "platform/sound/sound_output.h"

#include <QString>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>

namespace halvane {

/// An audio file opened for reading: any of the playable formats, recognised by content, decoded to
/// interleaved 32-bit floats at the file's own rate. Integer samples of up to 24 bits convert
/// exactly (full scale is 1); 32-bit ones are rounded to the nearest float. One thread at a time
/// where nothing else is said, any thread but the audio thread: reading blocks on the disk. Never
/// writes.
class AudioFile {
  public:
    static Result<std::unique_ptr<AudioFile>> open(const QString& path);
    ~AudioFile();
    /// Loads the decoders ahead of the first open, which would wait for them. Any thread.
    static void prepare();

    /// The processing format. Two files with equal formats can follow each other in one stream.
    [[nodiscard]] const StreamFormat& format() const;
    /// Exact length, with the encoder's delay and padding taken off.
    [[nodiscard]] std::int64_t lengthFrames() const;
    [[nodiscard]] double durationSeconds() const;
    /// The frame that the next read begins with.
    [[nodiscard]] std::int64_t position() const;

    /// Goes to a frame, cut to 0...lengthFrames; the next read delivers just what reading the file
    /// from its start would have delivered there (but for noise that AAC lets a decoder invent).
    /// The work is done by the next read.
    void seek(std::int64_t frame);

    /// Fills up to `frames` frames and returns how many: fewer only where the file ends, then 0. A
    /// damaged stretch reads as silence, so that what follows keeps its place; a file that is cut
    /// short ends early, with a line in the log. Decodes straight into the caller's buffer.
    std::size_t read(float* interleaved, std::size_t frames);
    /// Goes to a frame and reads from there. For several threads, each of which waits for the one
    /// that reads now.
    std::size_t readAt(std::int64_t frame, float* interleaved, std::size_t frames);

    /// Why reading ended before lengthFrames; none after an ordinary end.
    [[nodiscard]] const std::optional<QString>& failure() const;

  private:
    class Impl;
    explicit AudioFile(std::unique_ptr<Impl> impl);
    std::unique_ptr<Impl> m_impl;
};

} // namespace halvane
