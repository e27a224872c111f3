// SPDX-License-Identifier: MIT
#pragma once

#include <atomic>
#include <cstdint>

namespace halvane {

/// Counts the frames of one stream that have been rendered and, between the server's reports, how
/// many of them have been heard. heard() and rendered() may be called on any thread at any time;
/// the owner sees to it that the other operations never run at once. Times are Clock::now().
class HeardClock {
  public:
    /// A new stream begins, standing still at frame 0.
    void reset(int sampleRate);
    /// More frames have been handed to the server; fewer than 0: so many were taken back.
    void addRendered(std::int64_t frames);
    /// The sound runs, and this much has been heard now. May be below 0: so long until the first
    /// frame is heard.
    void run(double heardFrames, double now);
    /// The sound ends at this frame, which counts as heard from now on, though the ear has still to
    /// get there.
    void endAt(std::int64_t frame);
    /// The sound stands still from now on.
    void hold(double now);
    /// The server has run dry: nothing beyond what is rendered now is heard until the next run().
    void runDry();
    /// What has been rendered and not been heard has been dropped: it counts as heard. Stands
    /// still.
    void skipToRendered();

    [[nodiscard]] std::int64_t rendered() const {
        return m_rendered.load(std::memory_order_acquire);
    }
    /// Never falls; exceeds rendered() only by what has been taken back meanwhile.
    [[nodiscard]] std::int64_t heard(double now) const;
    /// The frame that is at the ear, as far as the last report knows.
    [[nodiscard]] double atEar(double now) const;
    /// Whether a report has told that sound is being heard.
    [[nodiscard]] bool isRunning() const { return report().rate > 0; }

  private:
    struct Report {
        double heard = 0; ///< frames, at the time
        double time = 0;  ///< s
        double rate = 0;  ///< frames a second, 0 while it stands still
        double limit = 0; ///< frames that can be heard at most
    };
    [[nodiscard]] Report report() const;
    void publish(const Report& report);
    std::int64_t raiseLast(std::int64_t answer) const;

    double m_sampleRate = 0;
    std::atomic<std::int64_t> m_rendered = 0;
    mutable std::atomic<std::int64_t> m_last = 0; ///< the highest answer given

    // The report is written under a sequence number that is odd meanwhile; a reader that met a
    // writer tries again. Its fields are stored with release and loaded with acquire: a reader that
    // sees one new field also sees the odd number before it, and its second look at the number
    // can't move in front of its look at the fields.
    std::atomic<std::uint32_t> m_sequence = 0;
    std::atomic<double> m_heard = 0;
    std::atomic<double> m_time = 0;
    std::atomic<double> m_rate = 0;
    std::atomic<double> m_limit = 0;
};

} // namespace halvane
