// SPDX-License-Identifier: MIT
#include "audio/graph/decoder_thread.h"

#include "audio/files/audio_file.h"

#include <algorithm>
#include <pthread.h>

namespace halvane {
namespace {

/// What is decoded at a time: short, so that a seek never waits long for what it makes useless.
constexpr std::size_t blockFrames = 4096;

} // namespace

DecoderThread::DecoderThread(std::function<void(std::uint64_t, std::int64_t)> onCutShort)
    : m_onCutShort(std::move(onCutShort))
    , m_thread([this] { run(); }) {
}

DecoderThread::~DecoderThread() {
    {
        const std::lock_guard lock(m_mutex);
        m_quit = true;
    }
    m_wake.notify_one();
    m_thread.join();
}

void DecoderThread::begin(std::shared_ptr<StreamPipe> pipe, std::uint32_t epoch) {
    std::deque<DecodeSegment> dropped; // files close after the lock is given back
    {
        const std::lock_guard lock(m_mutex);
        m_pipe = std::move(pipe);
        m_epoch = epoch;
        m_epochBegun = false;
        m_segments.swap(dropped);
        m_segmentBegun = false;
    }
    m_wake.notify_one();
}

void DecoderThread::append(DecodeSegment segment) {
    {
        const std::lock_guard lock(m_mutex);
        m_segments.push_back(std::move(segment));
    }
    m_wake.notify_one();
}

bool DecoderThread::remove(std::uint64_t id) {
    const std::lock_guard lock(m_mutex);
    const auto it = std::find_if(m_segments.begin(), m_segments.end(),
                                 [id](const DecodeSegment& s) { return s.id == id; });
    if (it == m_segments.end() || (it == m_segments.begin() && m_segmentBegun))
        return false;
    m_segments.erase(it);
    return true;
}

void DecoderThread::setRunning(bool running) {
    {
        const std::lock_guard lock(m_mutex);
        m_running = running;
    }
    m_wake.notify_one();
}

void DecoderThread::awaitFrames(std::size_t frames, std::chrono::milliseconds atMost) {
    Lock lock(m_mutex);
    if (!m_pipe)
        return;
    m_filling = true;
    m_wake.notify_one();
    m_filled.wait_for(lock, atMost, [&] {
        const auto target = std::min(frames, m_pipe->samples.capacity() / m_pipe->channels() / 2);
        return m_quit || (m_epochBegun && (m_segments.empty() || filledFrames() >= target));
    });
}

std::size_t DecoderThread::filledFrames() const {
    const auto& samples = m_pipe->samples;
    const auto from = std::max(samples.consumed(), m_pipe->beginning());
    return std::size_t(samples.written() - from) / m_pipe->channels();
}

bool DecoderThread::hasWork() const {
    return m_pipe && !m_segments.empty() && m_filling;
}

void DecoderThread::run() {
    pthread_setname_np(pthread_self(), "halvane-decoder");
    Lock lock(m_mutex);
    while (!m_quit) {
        if (!m_epochBegun) {
            m_pipe->begin(m_epoch);
            m_epochBegun = true;
            m_filling = true;
            m_filled.notify_all();
        } else if (hasWork()) {
            decodeSome(lock);
        } else {
            rest(lock);
        }
    }
    m_filled.notify_all();
}

/// Decodes one block of the first segment into the ring, without the lock.
void DecoderThread::decodeSome(Lock& lock) {
    const auto pipe = m_pipe;
    const auto epoch = m_epoch;
    if (pipe->samples.writeAvailable() / pipe->channels() < blockFrames) {
        m_filling = false;
        return;
    }
    const DecodeSegment segment = m_segments.front();
    const bool begins = !m_segmentBegun;
    if (begins)
        m_delivered = 0;
    m_segmentBegun = true;
    const auto wanted =
        std::min<std::int64_t>(std::int64_t(blockFrames), segment.frames - m_delivered);

    lock.unlock();
    if (begins)
        segment.file->seek(segment.startFrame);
    m_block.resize(blockFrames * pipe->channels());
    const auto got = segment.file->read(m_block.data(), std::size_t(wanted));
    lock.lock();

    if (m_epoch != epoch)
        return; // nobody wants it any more
    pipe->samples.write(m_block.data(), got * pipe->channels());
    m_delivered += std::int64_t(got);
    if (got == 0 || m_delivered >= segment.frames)
        finishSegment(m_delivered);
    m_filled.notify_all();
}

void DecoderThread::finishSegment(std::int64_t delivered) {
    if (delivered < m_segments.front().frames)
        m_onCutShort(m_segments.front().id, delivered);
    m_segments.pop_front();
    m_segmentBegun = false;
}

/// Sleeps until there is something to do: until called, or until the ring is half empty.
void DecoderThread::rest(Lock& lock) {
    if (!m_pipe || m_segments.empty() || !m_running) {
        m_wake.wait(lock);
        return;
    }
    const auto half = m_pipe->samples.capacity() / m_pipe->channels() / 2;
    const auto filled = filledFrames();
    if (filled > half) {
        const std::chrono::duration<double> time(double(filled - half) /
                                                 m_pipe->format().sampleRate);
        // The ring empties in the server's strides, so there is no point in looking closer.
        if (m_wake.wait_for(lock, time) == std::cv_status::timeout)
            m_filling = true;
    } else {
        m_filling = true;
    }
}

} // namespace halvane
