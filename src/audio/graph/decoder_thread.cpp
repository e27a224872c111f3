// SPDX-License-Identifier: MIT
#include "audio/graph/decoder_thread.h"

#include "audio/files/audio_file.h"

#include <algorithm>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <pthread.h>
#include <thread>
#include <vector>

namespace halvane {

/// What one thread does, and what it shares with its owner: all under one mutex. A loop that has
/// been told to quit writes to no ring and calls nobody, so that another one may take its place at
/// once.
struct DecoderThread::Loop {
    using Lock = std::unique_lock<std::mutex>;

    explicit Loop(CutShort cutShort)
        : onCutShort(std::move(cutShort)) {}

    bool begin(std::shared_ptr<StreamPipe> on, std::uint32_t newEpoch);
    void run();
    void decodeSome(Lock& lock);
    void rest(Lock& lock);
    void finishSegment();
    [[nodiscard]] std::size_t filledFrames() const;
    [[nodiscard]] bool isFilled(std::size_t frames) const;
    void tellIfFilled();
    [[nodiscard]] bool hasWork() const { return pipe && !segments.empty() && filling; }

    const CutShort onCutShort;

    std::mutex mutex; ///< guards what follows
    std::condition_variable wake;
    std::condition_variable filled;
    std::shared_ptr<StreamPipe> pipe;
    std::deque<DecodeSegment> segments; ///< the first is being decoded
    std::int64_t delivered = 0;         ///< frames of the first segment, in the ring
    bool segmentBegun = false;
    std::uint32_t epoch = 0;
    bool epochBegun = true;
    bool running = false;
    bool filling = true;
    bool reading = false; ///< the thread is in a file, without the lock
    bool quit = false;
    std::size_t awaited = 0; ///< frames, by onFilled
    std::function<void()> onFilled;

    std::vector<float> block; ///< the thread's own
};

DecoderThread::DecoderThread(CutShort onCutShort)
    : m_onCutShort(std::move(onCutShort)) {
}

DecoderThread::~DecoderThread() {
    leaveBehind();
}

void DecoderThread::leaveBehind() {
    if (!m_loop)
        return;
    {
        const std::lock_guard lock(m_loop->mutex);
        m_loop->quit = true;
    }
    m_loop->wake.notify_one();
    m_loop.reset();
}

void DecoderThread::begin(std::shared_ptr<StreamPipe> pipe, std::uint32_t epoch) {
    if (m_loop && m_loop->begin(pipe, epoch))
        return;
    leaveBehind();
    m_loop = std::make_shared<Loop>(m_onCutShort);
    m_loop->begin(std::move(pipe), epoch);
    std::thread([loop = m_loop] { loop->run(); }).detach();
}

/// False where the thread is in a file: what it reads there belongs to the epoch before.
bool DecoderThread::Loop::begin(std::shared_ptr<StreamPipe> on, std::uint32_t newEpoch) {
    std::deque<DecodeSegment> dropped; // files are let go after the lock has been given back
    {
        const std::lock_guard lock(mutex);
        if (reading)
            return false;
        pipe = std::move(on);
        epoch = newEpoch;
        epochBegun = false;
        running = false;
        segments.swap(dropped);
        segmentBegun = false;
        onFilled = nullptr;
        pipe->setComplete(true);
    }
    wake.notify_one();
    return true;
}

void DecoderThread::append(DecodeSegment segment) {
    {
        const std::lock_guard lock(m_loop->mutex);
        m_loop->segments.push_back(std::move(segment));
        m_loop->pipe->setComplete(false);
    }
    m_loop->wake.notify_one();
}

bool DecoderThread::remove(std::uint64_t id) {
    const std::lock_guard lock(m_loop->mutex);
    auto& segments = m_loop->segments;
    const auto it = std::find_if(segments.begin(), segments.end(),
                                 [id](const DecodeSegment& s) { return s.id == id; });
    if (it == segments.end() || (it == segments.begin() && m_loop->segmentBegun))
        return false;
    segments.erase(it);
    m_loop->pipe->setComplete(segments.empty());
    return true;
}

void DecoderThread::setRunning(bool running) {
    if (!m_loop)
        return;
    {
        const std::lock_guard lock(m_loop->mutex);
        m_loop->running = running;
    }
    m_loop->wake.notify_one();
}

bool DecoderThread::awaitFrames(std::size_t frames, std::chrono::milliseconds atMost) {
    if (!m_loop)
        return true;
    Loop& loop = *m_loop;
    Loop::Lock lock(loop.mutex);
    loop.filling = true;
    loop.wake.notify_one();
    return loop.filled.wait_for(lock, atMost, [&] { return loop.isFilled(frames); });
}

bool DecoderThread::isDry() const {
    if (!m_loop)
        return false;
    const std::lock_guard lock(m_loop->mutex);
    return !m_loop->segments.empty() && m_loop->filledFrames() == 0;
}

void DecoderThread::whenFilled(std::size_t frames, std::function<void()> call) {
    const std::lock_guard lock(m_loop->mutex);
    m_loop->awaited = frames;
    m_loop->onFilled = std::move(call);
    m_loop->tellIfFilled();
}

bool DecoderThread::Loop::isFilled(std::size_t frames) const {
    const auto target = std::min(frames, pipe->samples.capacity() / pipe->channels() / 2);
    return epochBegun && (segments.empty() || filledFrames() >= target);
}

void DecoderThread::Loop::tellIfFilled() {
    if (onFilled && isFilled(awaited))
        std::exchange(onFilled, nullptr)();
}

std::size_t DecoderThread::Loop::filledFrames() const {
    const auto& samples = pipe->samples;
    const auto from = std::max(samples.consumed(), pipe->beginning());
    return std::size_t(samples.written() - from) / pipe->channels();
}

void DecoderThread::Loop::run() {
    pthread_setname_np(pthread_self(), "halvane-decoder");
    Lock lock(mutex);
    while (!quit) {
        if (!epochBegun) {
            pipe->begin(epoch);
            epochBegun = true;
            filling = true;
            filled.notify_all();
        } else if (hasWork()) {
            decodeSome(lock);
        } else {
            rest(lock);
        }
    }
}

/// Decodes one block of the first segment into the ring, without the lock.
void DecoderThread::Loop::decodeSome(Lock& lock) {
    constexpr std::size_t blockFrames = StreamPipe::blockFrames;
    if (pipe->samples.writeAvailable() / pipe->channels() < blockFrames) {
        filling = false;
        return;
    }
    const DecodeSegment segment = segments.front();
    if (!std::exchange(segmentBegun, true))
        delivered = 0;
    const auto from = segment.startFrame + delivered;
    const auto wanted =
        std::min<std::int64_t>(std::int64_t(blockFrames), segment.frames - delivered);
    block.resize(blockFrames * pipe->channels());

    reading = true;
    lock.unlock();
    const auto got = segment.file->readAt(from, block.data(), std::size_t(wanted));
    lock.lock();
    reading = false;
    if (quit)
        return; // what was read is nobody's, and the ring is another's

    if (delivered == 0) {
        const SegmentStart start{pipe->samples.written(), segment.id};
        pipe->starts.write(&start, 1);
    }
    pipe->samples.write(block.data(), got * pipe->channels());
    delivered += std::int64_t(got);
    if (got == 0 || delivered >= segment.frames)
        finishSegment();
    filled.notify_all();
    tellIfFilled();
}

void DecoderThread::Loop::finishSegment() {
    if (delivered < segments.front().frames)
        onCutShort(segments.front().id, delivered);
    segments.pop_front();
    segmentBegun = false;
    pipe->setComplete(segments.empty());
}

/// Sleeps until there is something to do: until called, or until the ring is half empty.
void DecoderThread::Loop::rest(Lock& lock) {
    if (!pipe || segments.empty() || !running) {
        wake.wait(lock);
        return;
    }
    const auto half = pipe->samples.capacity() / pipe->channels() / 2;
    const auto now = filledFrames();
    if (now > half) {
        const std::chrono::duration<double> time(double(now - half) / pipe->format().sampleRate);
        // The ring empties in the server's strides, so there is no point in looking closer.
        if (wake.wait_for(lock, time) == std::cv_status::timeout)
            filling = true;
    } else {
        filling = true;
    }
}

} // namespace halvane
