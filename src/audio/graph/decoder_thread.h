// SPDX-License-Identifier: MIT
#pragma once

#include "audio/graph/stream_pipe.h"

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>

namespace halvane {

class AudioFile;

/// A stretch of a file that is to be played.
struct DecodeSegment {
    std::uint64_t id = 0;
    std::shared_ptr<AudioFile> file;
    std::int64_t startFrame = 0;
    std::int64_t frames = 0;
};

/// Keeps a stream's ring filled from the files that are scheduled, one after another without a gap.
/// While the sound runs the thread wakes about once a second, to fill the emptier half of the ring;
/// while it is paused, or all is decoded, it sleeps until it is called. Main thread.
///
/// Nothing here waits for the disk. A thread that is in the middle of reading when its segments are
/// dropped is left behind, with the file that it reads, and another one goes on: a read that hangs
/// holds up neither the next file nor the end of this.
class DecoderThread {
  public:
    /// Gets the segment's id and how many frames it really had, on the decoder thread, when a file
    /// ended before its segment did. Must own what it uses.
    using CutShort = std::function<void(std::uint64_t id, std::int64_t frames)>;

    explicit DecoderThread(CutShort onCutShort);
    ~DecoderThread();
    DecoderThread(const DecoderThread&) = delete;
    DecoderThread& operator=(const DecoderThread&) = delete;

    /// Drops all segments and writes to this pipe from now on, under a new epoch; stands still
    /// until it is set running.
    void begin(std::shared_ptr<StreamPipe> pipe, std::uint32_t epoch);
    /// Adds a segment behind the others.
    void append(DecodeSegment segment);
    /// Takes a segment back, unless its decoding has begun already; whether it could.
    bool remove(std::uint64_t id);
    /// Whether somebody is taking samples out of the ring.
    void setRunning(bool running);

    /// Waits until so many frames (or half the ring) can be taken out, or no more are to come.
    /// False when the time is over before.
    [[nodiscard]] bool awaitFrames(std::size_t frames, std::chrono::milliseconds atMost);
    /// Nothing is left in the ring, and there is more to decode.
    [[nodiscard]] bool isDry() const;
    /// Calls on the decoder thread when as many are there, once, unless another epoch begins. Must
    /// own what it uses.
    void whenFilled(std::size_t frames, std::function<void()> call);

  private:
    struct Loop;

    void leaveBehind();

    const CutShort m_onCutShort;
    std::shared_ptr<Loop> m_loop; ///< shared with the thread that runs it
};

} // namespace halvane
