// SPDX-License-Identifier: MIT
#pragma once

#include "audio/analysis/spectrum_model.h"
#include "audio/analysis/spectrum_tap.h"
#include "audio/files/file_opener.h"
#include "audio/graph/graph_settings.h"
#include "audio/graph/player_node.h"
#include "audio/graph/transport_engine.h"
#include "platform/clock.h"
#include "platform/sound/sound_output.h"

#include <QObject>
#include <QString>

#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace halvane {

/// Plays one file at a time from a chosen position, with an optional second file queued behind it
/// that follows without a gap. Knows nothing of the library or the queue. Main thread only; its
/// callbacks are called on the main thread and never from inside one of its own operations.
/// Times are in seconds, gains in dB. Failures are descriptions for the log and the user.
class AudioPlaybackEngine : public QObject, public TransportEngine {
    Q_OBJECT

  public:
    /// The output and the clock must outlive the engine.
    AudioPlaybackEngine(SoundOutput& output, Clock& clock, QObject* parent = nullptr);
    ~AudioPlaybackEngine() override;

    /// Opens a file, without scheduling anything. On failure the engine is left unloaded. Waits for
    /// the disk, unless it is the file that prescheduleNextIfCompatible was last given.
    [[nodiscard]] std::optional<QString> load(const QString& path) override;
    /// Stops and forgets everything.
    void unload() override;
    [[nodiscard]] bool hasFile() const override;
    /// Length of the loaded file; 0 without one.
    [[nodiscard]] double durationSeconds() const override;
    /// The loaded file's processing rate in Hz; 0 without one.
    [[nodiscard]] double fileSampleRate() const;
    /// The output device's rate in Hz; 0 while unknown.
    [[nodiscard]] double outputSampleRate() const;

    /// Schedules the file from a position, cut to the file's length; drops a pre-scheduled file.
    [[nodiscard]] std::optional<QString> scheduleSegment(double fromSeconds, bool andPlay) override;
    /// Stops the sound and keeps the position.
    void pause() override;
    /// Goes on after a pause.
    [[nodiscard]] std::optional<QString> resume() override;
    /// The engine's own playing flag.
    [[nodiscard]] bool isPlaying() const override;
    /// Position heard in the current file.
    [[nodiscard]] double elapsedSeconds() const override;

    /// Opens a file away from the main thread and then queues it behind the current one, if it can
    /// follow without a gap; prescheduleSettled tells. False where nothing is done because nothing
    /// plays that it could follow, or another file is queued or being opened.
    bool prescheduleNextIfCompatible(const QString& path) override;
    /// Makes the pre-scheduled file current and gives its path; none when there is none.
    std::optional<QString> adoptPrescheduledTrack() override;
    /// Drops a pre-scheduled file, or one being opened, keeping the position and the playing state.
    void invalidatePreschedule() override;

    /// Takes playback up again after the stream was lost or its device changed, from the position
    /// heard. The output's signal leads here.
    void handleConfigurationChange();
    /// Moves to a device (none: the system's default), keeping position and playing state; on
    /// failure goes on where it was.
    [[nodiscard]] std::optional<QString> setOutputDevice(std::optional<std::uint32_t> id);

    /// Gains and preamp in dB, each clamped to -12...+12; missing gains keep their bands.
    void setEQ(bool enabled, const std::vector<double>& gains, double preamp);
    /// The per-track gain in dB, clamped to -18...+12.
    void setTrackGain(double dB) override;
    /// 0...1, clamped when applied.
    void setVolume(double volume) override;

    SpectrumModel& spectrum();

    /// The current file, or chain, has been heard to its end.
    std::function<void()> onTrackEnd;
    /// Playback could not be taken up again; the text says why.
    std::function<void(const QString& reason)> onPlaybackInterrupted;
    /// The stream was made anew and playback goes on; a pre-scheduled file has been dropped.
    std::function<void()> onGraphRebuilt;
    /// The system wants silence, for a call perhaps (true), or no longer does (false). The engine
    /// itself plays on.
    std::function<void(bool pause)> onPauseRequested;

  Q_SIGNALS:
    /// outputSampleRate has another value: another device, or the device's own rate.
    void outputSampleRateChanged();
    /// The file given to prescheduleNextIfCompatible has been queued, or can't follow. Not told of
    /// one that was dropped meanwhile.
    void prescheduleSettled(bool queued);

  private:
    struct NextFile {
        std::shared_ptr<AudioFile> file;
        QString path;
    };

    std::optional<QString> schedule(std::int64_t startFrame, bool andPlay);
    [[nodiscard]] std::int64_t frameAt(double seconds) const;
    [[nodiscard]] std::int64_t elapsedFrames() const;
    std::shared_ptr<AudioFile> takeOpened(const QString& path);
    void follow(const QString& path, AudioFile::Opened opened);
    void dropPending();
    std::function<void()> completion();
    void endOfPlayback(std::int64_t generation);
    void post(std::int64_t generation, void (AudioPlaybackEngine::*operation)());
    void reportTrackEnd();
    void reportRebuilt();

    SoundOutput& m_output;
    SpectrumModel m_spectrum;
    SpectrumTap m_tap;
    PlayerNode m_node;
    GraphSettings m_settings;

    // Positions are kept in frames, so that taking playback up again never loses or repeats one.
    std::shared_ptr<AudioFile> m_file;
    std::int64_t m_segmentStartFrame = 0;
    std::int64_t m_scheduleGeneration = 0; ///< counts what was thrown away
    std::int64_t m_chainPriorFrames = 0;   ///< heard of the chain's earlier files
    bool m_playing = false;
    std::optional<std::uint32_t> m_device;

    FileOpener m_opener;    ///< opens the file that may follow
    NextFile m_pendingNext; ///< scheduled behind the current one
    NextFile m_setAside;    ///< opened, but of another format: can be loaded
};

} // namespace halvane
