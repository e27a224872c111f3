// SPDX-License-Identifier: MIT
#pragma once

#include "platform/sound/sound_output.h"

#include <cstddef>
#include <cstdint>
#include <memory>

namespace halvane {

class SpectrumModel;

/// Listens to the end of the audio graph and shows the spectrum of what is heard at that moment,
/// and whether it passes full scale: what is pushed waits until the output says that it has reached
/// the ear. The analysis runs on a thread of its own, at most 30 times a second, and only while the
/// tap is active and the model is watched; otherwise that thread sleeps and nothing wakes it.
class SpectrumTap {
  public:
    /// Main thread. Both must outlive the tap. `output` is asked for framesHeard on the analysis
    /// thread.
    SpectrumTap(SpectrumModel& model, const SoundOutput& output);
    ~SpectrumTap();

    /// A new stream begins: its frames count from 0 and what waits of the old one is dropped. Main
    /// thread, while the output does not render.
    void beginStream(const StreamFormat& format);
    /// What has been pushed and not been heard will not be heard (the output was flushed). Main
    /// thread.
    void discard();
    /// Playing or not. Main thread.
    void setActive(bool active);

    /// Takes a block of the final mix in the stream's format, whose first frame is the stream's
    /// frame `streamFrame`. Audio thread; wait-free. What finds no room is dropped.
    void push(const float* interleaved, std::size_t frames, std::int64_t streamFrame) noexcept;

  private:
    class Impl;
    std::unique_ptr<Impl> m_impl;
};

} // namespace halvane
