// SPDX-License-Identifier: MIT
#pragma once

#include "audio/graph/transport_engine.h"

#include <QHash>
#include <QSet>

namespace halvane::test {

/// An engine without sound that can be made to fail. It follows the real one's contract: a load
/// forgets everything, a schedule drops the queued successor, and only a file of the same format
/// can be queued.
class FakeEngine final : public TransportEngine {
  public:
    // What the test sets.
    QSet<QString> broken;                   ///< files that do not load
    QHash<QString, int> formatOf;           ///< files of other formats than 0
    double length = 200;                    ///< seconds of every file
    std::optional<QString> scheduleFailure; ///< of the next schedule alone
    std::optional<QString> resumeFailure;

    // What the test reads.
    QString file; ///< empty: none
    QString pending;
    double position = 0;
    bool playing = false;
    double trackGain = 0;
    double volume = 0;
    int loads = 0;

    /// The current file is heard to its end; the caller then tells the transport.
    void reachEnd() {
        position = length;
        if (pending.isEmpty())
            playing = false;
    }

    std::optional<QString> load(const QString& path) override {
        unload();
        ++loads;
        if (broken.contains(path))
            return QStringLiteral("no such stream");
        file = path;
        return std::nullopt;
    }
    void unload() override {
        file.clear();
        pending.clear();
        position = 0;
        playing = false;
    }
    [[nodiscard]] bool hasFile() const override { return !file.isEmpty(); }
    [[nodiscard]] double durationSeconds() const override { return hasFile() ? length : 0; }
    std::optional<QString> scheduleSegment(double fromSeconds, bool andPlay) override {
        pending.clear();
        position = fromSeconds;
        playing = andPlay && !scheduleFailure;
        return std::exchange(scheduleFailure, std::nullopt);
    }
    void pause() override { playing = false; }
    std::optional<QString> resume() override {
        playing = !resumeFailure;
        return resumeFailure;
    }
    [[nodiscard]] bool isPlaying() const override { return playing; }
    [[nodiscard]] double elapsedSeconds() const override { return position; }
    bool prescheduleNextIfCompatible(const QString& path) override {
        if (!hasFile() || !pending.isEmpty() || broken.contains(path) ||
            formatOf.value(path) != formatOf.value(file))
            return false;
        pending = path;
        return true;
    }
    std::optional<QString> adoptPrescheduledTrack() override {
        if (pending.isEmpty())
            return std::nullopt;
        file = std::exchange(pending, QString());
        position = 0;
        return file;
    }
    void invalidatePreschedule() override { pending.clear(); }
    void setTrackGain(double dB) override { trackGain = dB; }
    void setVolume(double value) override { volume = value; }
};

} // namespace halvane::test
