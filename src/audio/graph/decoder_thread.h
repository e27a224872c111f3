// SPDX-License-Identifier: MIT
#pragma once

#include "audio/graph/stream_pipe.h"

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

namespace halvane {

class AudioFile;

/// A stretch of a file that is to be played.
struct DecodeSegment {
    std::uint64_t id = 0;
    std::shared_ptr<AudioFile> file; ///< read by the decoder thread alone
    std::int64_t startFrame = 0;
    std::int64_t frames = 0;
};

/// Keeps a stream's ring filled from the files that are scheduled, one after another without a gap.
/// While the sound runs the thread wakes about once a second, to fill the emptier half of the ring;
/// while it is paused, or all is decoded, it sleeps until it is called. Main thread, except where
/// it says otherwise; nothing here waits for the disk.
class DecoderThread {
  public:
    /// `onCutShort` gets the segment's id and how many frames it really had, on the decoder thread,
    /// when a file ended before its segment did.
    explicit DecoderThread(std::function<void(std::uint64_t id, std::int64_t frames)> onCutShort);
    ~DecoderThread();

    /// Drops all segments and writes to this pipe from now on, under a new epoch.
    void begin(std::shared_ptr<StreamPipe> pipe, std::uint32_t epoch);
    /// Adds a segment behind the others.
    void append(DecodeSegment segment);
    /// Takes a segment back, unless its decoding has begun already; whether it could.
    bool remove(std::uint64_t id);
    /// Whether somebody is taking samples out of the ring.
    void setRunning(bool running);

    /// Waits until so many frames (or half the ring) can be taken out, or no more are to come;
    /// gives up when the time is over. Any thread but the audio thread.
    void awaitFrames(std::size_t frames, std::chrono::milliseconds atMost);

  private:
    using Lock = std::unique_lock<std::mutex>;

    void run();
    void decodeSome(Lock& lock);
    void rest(Lock& lock);
    void finishSegment(std::int64_t delivered);
    [[nodiscard]] std::size_t filledFrames() const;
    [[nodiscard]] bool hasWork() const;

    const std::function<void(std::uint64_t, std::int64_t)> m_onCutShort;

    std::mutex m_mutex; ///< guards what follows
    std::condition_variable m_wake;
    std::condition_variable m_filled;
    std::shared_ptr<StreamPipe> m_pipe;
    std::deque<DecodeSegment> m_segments; ///< the first is being decoded
    std::int64_t m_delivered = 0;         ///< frames of the first segment, in the ring
    bool m_segmentBegun = false;
    std::uint32_t m_epoch = 0;
    bool m_epochBegun = true;
    bool m_running = false;
    bool m_filling = true;
    bool m_quit = false;

    std::vector<float> m_block; ///< decoder thread
    std::thread m_thread;       ///< last, so that it finds the rest made
};

} // namespace halvane
