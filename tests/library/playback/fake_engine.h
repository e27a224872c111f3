// SPDX-License-Identifier: MIT
#pragma once

#include "audio/graph/transport_engine.h"

#include <QHash>
#include <QSet>

#include <utility>

namespace halvane::test {

/// An engine without sound, for the transport's rules and for faults. Follows the real one's
/// contract: opening forgets everything and is answered later, a schedule drops what was queued
/// behind, and only a file of the same format may be queued.
class FakeEngine final : public TransportEngine {
  public:
    // The world it plays in.
    QSet<QString> broken;                   ///< files that do not open
    QSet<QString> evicted;                  ///< files that live in the cloud
    QHash<QString, int> formatOf;           ///< files of other formats than 0
    double length = 200;                    ///< seconds of every file
    std::optional<QString> scheduleFailure; ///< of the next schedule alone
    std::optional<QString> resumeFailure;
    bool isStalled = false; ///< the disk has stopped to answer in the middle of a file

    // What it came to.
    QString opening; ///< asked for and not answered yet; empty: none
    QString file;    ///< empty: none
    QString pending;
    double position = 0;
    bool playing = false;
    double trackGain = 0;
    double pendingGain = 0;
    double volume = 0;
    int opens = 0;
    int invalidations = 0; ///< of a file that was queued

    /// The disk answers. False when it was asked nothing.
    bool answer() {
        if (opening.isEmpty())
            return false;
        const QString path = std::exchange(opening, QString());
        if (evicted.contains(path)) {
            Q_EMIT foundInCloud();
        } else if (broken.contains(path)) {
            Q_EMIT openFailed(QStringLiteral("no such stream"));
        } else {
            file = path;
            ++opens;
            Q_EMIT opened();
        }
        return true;
    }
    /// The current file is heard to its end.
    void reachEnd() {
        position = length;
        if (pending.isEmpty())
            playing = false;
        Q_EMIT trackEnded();
    }

    void open(const QString& path) override {
        unload();
        opening = path;
    }
    void unload() override {
        opening.clear();
        file.clear();
        pending.clear();
        position = 0;
        playing = false;
    }
    [[nodiscard]] bool hasFile() const override { return !file.isEmpty(); }
    [[nodiscard]] double durationSeconds() const override { return hasFile() ? length : 0; }
    Result<> scheduleSegment(double fromSeconds, bool andPlay) override {
        pending.clear();
        position = fromSeconds;
        playing = andPlay && !scheduleFailure;
        return outcome(std::exchange(scheduleFailure, std::nullopt));
    }
    void pause() override { playing = false; }
    Result<> resume() override {
        playing = hasFile() && !resumeFailure;
        return outcome(resumeFailure);
    }
    [[nodiscard]] bool isPlaying() const override { return playing; }
    [[nodiscard]] bool isWaitingForDisk() const override { return isStalled || !opening.isEmpty(); }
    [[nodiscard]] double elapsedSeconds() const override { return position; }
    bool prescheduleNextIfCompatible(const QString& path, double gain) override {
        if (evicted.contains(path))
            Q_EMIT nextFoundInCloud(path);
        if (!hasFile() || !pending.isEmpty() || broken.contains(path) || evicted.contains(path) ||
            formatOf.value(path) != formatOf.value(file))
            return false;
        pending = path;
        pendingGain = gain;
        return true;
    }
    bool setNextGain(const QString& path, double dB) override {
        if (pending.isEmpty() || pending != path)
            return false;
        pendingGain = dB;
        return true;
    }
    std::optional<QString> adoptPrescheduledTrack() override {
        if (pending.isEmpty())
            return std::nullopt;
        file = std::exchange(pending, QString());
        trackGain = pendingGain;
        position = 0;
        return file;
    }
    void invalidatePreschedule() override {
        invalidations += pending.isEmpty() ? 0 : 1;
        pending.clear();
    }
    void setTrackGain(double dB) override { trackGain = dB; }
    void setVolume(double value) override { volume = value; }

  private:
    static Result<> outcome(const std::optional<QString>& failure) {
        return failure ? Result<>(Failure{*failure}) : Result<>();
    }
};

} // namespace halvane::test
