// SPDX-License-Identifier: MIT
#pragma once

#include "base/result.h"

#include <QObject>

#include <cstddef>
#include <cstdint>
#include <optional>

namespace halvane {

/// What a stream carries: interleaved 32-bit floats.
struct StreamFormat {
    int sampleRate = 0;              ///< Hz
    int channels = 0;                ///< 1...8
    std::uint64_t channelLayout = 0; ///< one bit a speaker, WAVEFORMATEXTENSIBLE order; 0 = default

    bool operator==(const StreamFormat&) const = default;
};

/// Gives an output its samples.
class RenderSource {
  public:
    virtual ~RenderSource() = default;
    /// Fills `frames` frames of interleaved floats, all of them, with silence where there is
    /// nothing to play. Audio thread: must not lock, allocate, log or make a system call.
    virtual void render(float* interleaved, std::size_t frames) noexcept = 0;
    /// Takes back up to so many of the frames rendered last, which are rendered again next; how
    /// many. What is rendered then begins as it was, and changes into what it is now within
    /// `changeSeconds`. On the audio thread, or while that is held off; as free of waiting as
    /// render.
    virtual std::size_t rewind(std::size_t) noexcept { return 0; }
    /// Fills with silence what rewind has taken back. The same threads.
    virtual void rest(float*, std::size_t) noexcept {}
    static constexpr double changeSeconds = 0.01;
    /// What an output asks for at once at most, and has on its way to the ear.
    static constexpr int queueMilliseconds = 500;
    /// Waits until this many frames can be rendered without a hole, or no more are to come. Only
    /// for outputs that pull faster than time passes; main thread.
    virtual void awaitFrames(std::size_t) {}
};

/// One stream to one output device: the real sound server, silence against the clock, or a test's
/// output pulled by hand. Everything but RenderSource::render runs on the main thread.
class SoundOutput : public QObject {
    Q_OBJECT

  public:
    using QObject::QObject;

    /// Makes a stream of this format that pulls from `source`, which must outlive it (until close).
    /// The stream starts paused. Never waits for the server: a stream that the server then refuses
    /// is reported through configurationChanged. On failure stays closed. Closes a stream that is
    /// open.
    virtual Result<> open(const StreamFormat& format, RenderSource& source) = 0;
    /// Ends the stream and drops what is queued. After it returns, render is not called any more.
    virtual void close() = 0;
    [[nodiscard]] virtual bool isOpen() const = 0;

    /// Starts pulling.
    virtual Result<> start() = 0;
    /// Stops pulling, and hearing within a moment: what is queued is rendered again as the end of
    /// the sound or, where that can't be, kept and heard after the next start. After it returns,
    /// render is neither running nor called until then, and framesHeard stands where the sound
    /// ends.
    virtual void pause() = 0;
    [[nodiscard]] virtual bool isRunning() const = 0;
    /// Drops what has been rendered and not heard. While it stands still, where pause has not done
    /// so already.
    virtual void flush() = 0;
    /// Has what is queued rendered again, so that what the source has been told since is heard at
    /// once. Where that can't be, it is heard behind what is queued.
    virtual void revise() {}

    /// Frames rendered since open, less those that were taken back.
    [[nodiscard]] virtual std::int64_t framesRendered() const = 0;
    /// Frames heard since open: rendered, less what the server still holds, interpolated between
    /// its reports; never falls. Of a stream that has been lost, the
    /// last count. Any thread.
    [[nodiscard]] virtual std::int64_t framesHeard() const = 0;

    /// The device's own rate in Hz, 0 while unknown.
    [[nodiscard]] virtual int deviceSampleRate() const = 0;
    /// Chooses the device of the streams opened from now on; none follows the system's default. An
    /// open stream stays where it is until it is closed. On failure (there is no such device)
    /// changes nothing.
    virtual Result<> setDevice(std::optional<std::uint32_t> id) = 0;

  Q_SIGNALS:
    /// The stream has been lost or has to be made again: its owner reads framesHeard, which stands
    /// still, closes it and opens it again. Never from inside an operation.
    void configurationChanged();
    /// deviceSampleRate has another value; the stream plays on.
    void deviceSampleRateChanged();
    /// The system wants this stream to be silent (true: a call has begun, say), or no longer does
    /// (false). The stream itself plays on.
    void pauseRequested(bool pause);
};

} // namespace halvane
