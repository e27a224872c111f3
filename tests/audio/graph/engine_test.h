// SPDX-License-Identifier: MIT
#pragma once

#include "audio/graph/playback_engine.h"
#include "support/audio_material.h"
#include "support/child_process.h"
#include "support/manual_clock.h"
#include "support/offline_output.h"

#include <QCoreApplication>
#include <QStringList>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <cmath>

namespace halvane::test {

/// Sound whose every sample tells the frame that it belongs to, counted from `first`; read back
/// with frameOf. Below 24 bits it would soon run out of numbers.
inline Pcm numbered(std::size_t frames, int sampleRate = 44'100, int channels = 2,
                    std::int32_t first = 1) {
    Pcm pcm{sampleRate, channels, 24, {}};
    pcm.samples.reserve(frames * std::size_t(channels));
    for (std::size_t i = 0; i < frames; ++i)
        pcm.samples.insert(pcm.samples.end(), std::size_t(channels), first + std::int32_t(i));
    return pcm;
}

inline std::int32_t frameOf(float sample) {
    return std::int32_t(std::lround(double(sample) * 8'388'608));
}

/// Opens a file and waits until it is there, or is not.
inline Result<> open(AudioPlaybackEngine& engine, const QString& path) {
    std::optional<Result<>> outcome;
    const QObject receiver;
    QObject::connect(&engine, &AudioPlaybackEngine::opened, &receiver,
                     [&] { outcome = Result<>(); });
    QObject::connect(&engine, &AudioPlaybackEngine::openFailed, &receiver,
                     [&](const QString& reason) { outcome = Failure{reason}; });
    engine.open(path);
    if (!waitFor([&] { return outcome.has_value(); }))
        return Failure{QStringLiteral("no answer")};
    return *outcome;
}

inline QString failureOf(const Result<>& result) {
    return result ? QString() : result.failure().text;
}

/// Pre-schedules a file and tells whether it follows.
inline bool preschedule(AudioPlaybackEngine& engine, const QString& path, double gain = 0) {
    std::optional<bool> queued;
    const QObject receiver;
    QObject::connect(&engine, &AudioPlaybackEngine::prescheduleSettled, &receiver,
                     [&](bool can) { queued = can; });
    return engine.prescheduleNextIfCompatible(path, gain) &&
           waitFor([&] { return queued.has_value(); }) && *queued;
}

/// An engine at full volume on an output that is pulled by hand and a clock that is moved by hand.
class EngineTest : public testing::Test {
  protected:
    EngineTest() {
        engine.setVolume(1);
        QObject::connect(&engine, &AudioPlaybackEngine::trackEnded, [this] {
            ++trackEnds;
            if (adoptAtEnd)
                adopted << engine.adoptPrescheduledTrack().value_or(QString());
        });
        QObject::connect(&engine, &AudioPlaybackEngine::graphRebuilt, [this] { ++rebuilds; });
        QObject::connect(&engine, &AudioPlaybackEngine::playbackInterrupted,
                         [this](const QString& reason) { interruptions << reason; });
    }

    /// Writes a file for this test.
    QString wave(const Pcm& pcm) {
        const auto path = folder.filePath(QStringLiteral("%1.wav").arg(++files));
        writeWave(pcm, path);
        return path;
    }

    void play(const QString& path, double fromSeconds = 0) {
        ASSERT_TRUE(open(path));
        ASSERT_TRUE(engine.scheduleSegment(fromSeconds, true));
    }

    Result<> open(const QString& path) { return test::open(engine, path); }
    bool preschedule(const QString& path, double gain = 0) {
        return test::preschedule(engine, path, gain);
    }

    /// Runs what has been posted to the main thread.
    static void settle() { QCoreApplication::processEvents(); }

    /// Renders frames, hears them, and lets as much time pass.
    void listen(std::size_t frames) {
        output.play(frames);
        pass(double(frames) / output.format().sampleRate);
    }
    void pass(double seconds) {
        settle();
        clock.advance(std::chrono::milliseconds(std::int64_t(std::ceil(seconds * 1000)) + 20));
        settle();
    }

    /// The position in whole frames.
    [[nodiscard]] std::int64_t elapsedFrames() const {
        return std::llround(engine.elapsedSeconds() * engine.fileSampleRate());
    }

    QTemporaryDir folder;
    int files = 0;
    ManualClock clock;
    OfflineOutput output;
    AudioPlaybackEngine engine{output, clock};

    bool adoptAtEnd = false;
    int trackEnds = 0;
    QStringList adopted;
    int rebuilds = 0;
    QStringList interruptions;
};

} // namespace halvane::test
