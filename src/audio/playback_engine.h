// SPDX-License-Identifier: MIT
#pragma once

#include "platform/clock.h"
#include "platform/sound_output.h"

#include <QObject>
#include <QString>

#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace halvane {

class SpectrumModel;

/// Plays one file at a time from a chosen position, with an optional second file queued behind it
/// that follows without a gap. Knows nothing of the library or the queue. Main thread only; its
/// callbacks are called on the main thread and never from inside one of its own operations.
/// Times are in seconds, gains in dB. Failures are descriptions for the log and the user.
class AudioPlaybackEngine : public QObject {
    Q_OBJECT

  public:
    /// The output and the clock must outlive the engine.
    AudioPlaybackEngine(SoundOutput& output, Clock& clock, QObject* parent = nullptr);
    ~AudioPlaybackEngine() override;

    /// Opens a file, without scheduling anything. On failure the engine is left unloaded.
    [[nodiscard]] std::optional<QString> load(const QString& path);
    /// Stops and forgets everything.
    void unload();
    bool hasFile() const;
    /// Length of the loaded file; 0 without one.
    double durationSeconds() const;
    /// The loaded file's processing rate in Hz; 0 without one.
    double fileSampleRate() const;
    /// The output device's rate in Hz; 0 while unknown.
    double outputSampleRate() const;

    /// Schedules the file from a position, cut to the file's length; drops a pre-scheduled file.
    [[nodiscard]] std::optional<QString> scheduleSegment(double fromSeconds, bool andPlay);
    /// Stops the sound and keeps the position.
    void pause();
    /// Goes on after a pause.
    [[nodiscard]] std::optional<QString> resume();
    /// The engine's own playing flag.
    bool isPlaying() const;
    /// Position heard in the current file.
    double elapsedSeconds() const;

    /// Queues a file behind the current one; false when it can't follow without a gap.
    bool prescheduleNextIfCompatible(const QString& path);
    /// Makes the pre-scheduled file current and gives its path; none when there is none.
    std::optional<QString> adoptPrescheduledTrack();
    /// Drops a pre-scheduled file, keeping the position and the playing state.
    void invalidatePreschedule();

    /// Takes playback up again after the stream was lost or its device changed, from the position
    /// heard. The output's signal leads here.
    void handleConfigurationChange();
    /// Moves to a device (none: the system's default), keeping position and playing state; on
    /// failure goes on where it was.
    [[nodiscard]] std::optional<QString> setOutputDevice(std::optional<std::uint32_t> id);

    /// Gains and preamp in dB, each clamped to -12...+12; missing gains keep their bands.
    void setEQ(bool enabled, const std::vector<double>& gains, double preamp);
    /// The per-track gain in dB, clamped to -18...+12.
    void setTrackGain(double dB);
    /// 0...1, clamped when applied.
    void setVolume(double volume);

    SpectrumModel& spectrum();

    /// The current file, or chain, has been heard to its end.
    std::function<void()> onTrackEnd;
    /// Playback could not be taken up again; the text says why.
    std::function<void(const QString& reason)> onPlaybackInterrupted;
    /// The stream was made anew and playback goes on; a pre-scheduled file has been dropped.
    std::function<void()> onGraphRebuilt;

  Q_SIGNALS:
    /// outputSampleRate has another value: another device, or the device's own rate.
    void outputSampleRateChanged();

  private:
    class Impl;
    std::unique_ptr<Impl> m_impl;
};

} // namespace halvane
