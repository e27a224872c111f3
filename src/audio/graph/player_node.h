// SPDX-License-Identifier: MIT
#pragma once

#include "audio/graph/decoder_thread.h"
#include "audio/graph/heard_timeline.h"
#include "audio/graph/render_graph.h"
#include "base/result.h"
#include "platform/clock.h"
#include "platform/mailbox.h"
#include "platform/sound/sound_output.h"

#include <QObject>

#include <deque>
#include <functional>
#include <memory>

namespace halvane {

class AudioFile;
class SpectrumTap;

/// Plays stretches of files one after another without a gap, and knows how much of them has been
/// heard. Owns the decoder thread and the audio graph, and opens and closes the output's stream.
/// Main thread; completions are called from timers, never from inside an operation.
class PlayerNode : public QObject {
    Q_OBJECT

  public:
    /// What is handed in must outlive the node.
    PlayerNode(SoundOutput& output, Clock& clock, SpectrumTap* tap, QObject* parent = nullptr);
    ~PlayerNode() override;

    RenderGraph& graph() { return m_graph; }

    /// What is scheduled from now on has this format. A stream of another format is closed. Only
    /// with nothing scheduled.
    void setFormat(const StreamFormat& format);
    /// Ends the sound and drops everything scheduled, without calling completions. With an open
    /// stream what has been rendered and not heard is dropped too, so what is scheduled next is
    /// heard at once.
    void stop();
    /// Lets the stream go, at the position heard.
    void closeStream();

    /// Schedules frames of a file behind what is scheduled already, under a gain (linear) of their
    /// own; `heard` is called once when the last of them has been heard, however many the file
    /// turned out to have.
    void schedule(std::shared_ptr<AudioFile> file, std::int64_t startFrame, std::int64_t frames,
                  float gain, std::function<void()> heard);
    /// Changes the gain (linear) of the segment that is being heard, if there is one.
    void setGain(float gain);
    /// The same for the segment that was scheduled last.
    void setLastGain(float gain);
    /// Has what the graph was told since heard at once, instead of behind what the server holds.
    void revise();
    /// Takes back what was scheduled last, its completion with it; false when it was begun already.
    bool unscheduleLast();
    [[nodiscard]] bool hasScheduled() const { return !m_segments.empty(); }

    /// Starts the sound, on a new stream if there is none; that must be right after stop. On
    /// failure stays stopped. Where the disk is slow the sound starts when enough of it is there,
    /// and a failure is then told by startFailed.
    Result<> play();
    /// Stops the sound at once and keeps the place.
    void pause();
    [[nodiscard]] bool hasStream() const { return m_streamOpen && m_output.isOpen(); }

    /// Playing, and the decoder has nothing to hear, or not enough to begin with.
    [[nodiscard]] bool isStarved() const;

    /// Frames heard of what was scheduled since the last stop.
    [[nodiscard]] std::int64_t framesHeard() const;
    /// Frames scheduled since the last stop in front of the last segment.
    [[nodiscard]] std::int64_t framesBeforeLast() const;

  Q_SIGNALS:
    void startFailed(const QString& reason);

  private:
    struct Segment {
        std::uint64_t id;
        std::int64_t begin; ///< in frames since the last stop
        std::int64_t frames;
        float gain;
        std::function<void()> heard;
    };

    void change(Segment& segment, float gain);
    void publishGains();
    Result<> startSound();
    void startLate(std::uint32_t epoch);
    void segmentCutShort(std::uint64_t id, std::int64_t frames);
    void arm();
    void checkHeard();

    SoundOutput& m_output;
    Clock& m_clock;
    SpectrumTap* const m_tap;
    std::shared_ptr<StreamPipe> m_pipe;
    bool m_streamOpen = false;
    bool m_playing = false;
    std::uint32_t m_epoch = 0;
    std::uint64_t m_lastId = 0;
    std::deque<Segment> m_segments; ///< those not heard to their end
    std::int64_t m_framesCompleted = 0;
    mutable HeardTimeline m_timeline;
    std::int64_t m_heardAtLastCheck = -1;
    bool m_endReached = false; ///< of the last segment
    std::unique_ptr<Timer> m_timer;

    Mailbox m_news; ///< from the decoder
    DecoderThread m_decoder;
    RenderGraph m_graph;
};

} // namespace halvane
