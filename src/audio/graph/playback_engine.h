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

#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace halvane {

/// Plays files through the equalizer and the gains to an output; knows nothing of the library or
/// the queue. What its operations and signals mean, TransportEngine says. Main thread only.
class AudioPlaybackEngine : public TransportEngine {
    Q_OBJECT

  public:
    /// The output and the clock must outlive the engine. Without cloud files every file counts as
    /// lying on this machine.
    AudioPlaybackEngine(SoundOutput& output, Clock& clock,
                        std::shared_ptr<const CloudFiles> cloudFiles = {},
                        QObject* parent = nullptr);

    void open(const QString& path) override;
    void unload() override;
    [[nodiscard]] bool hasFile() const override;
    [[nodiscard]] double durationSeconds() const override;
    /// The file's processing rate in Hz; 0 without one.
    [[nodiscard]] double fileSampleRate() const;
    /// The output device's rate in Hz; 0 while unknown.
    [[nodiscard]] double outputSampleRate() const;

    Result<> scheduleSegment(double fromSeconds, bool andPlay) override;
    void pause() override;
    Result<> resume() override;
    [[nodiscard]] bool isPlaying() const override;
    [[nodiscard]] bool isWaitingForDisk() const override;
    [[nodiscard]] double elapsedSeconds() const override;

    /// prescheduleSettled tells what came of it.
    bool prescheduleNextIfCompatible(const QString& path, double gain) override;
    bool setNextGain(const QString& path, double dB) override;
    std::optional<QString> adoptPrescheduledTrack() override;
    void invalidatePreschedule() override;

    /// Takes playback up again after the stream was lost or its device changed, from the position
    /// heard. The output's signal leads here.
    void handleConfigurationChange();
    /// Moves to a device (none: the system's default), keeping position and playing state; on
    /// failure goes on where it was.
    Result<> setOutputDevice(std::optional<std::uint32_t> id);

    /// Gains and preamp in dB, each clamped to -12...+12; missing gains keep their bands.
    void setEQ(bool enabled, const std::vector<double>& gains, double preamp);
    void setTrackGain(double dB) override;
    void setVolume(double volume) override;

    SpectrumModel& spectrum();

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
        double gain = 0; ///< dB
    };

    void take(std::shared_ptr<AudioFile> file);
    Result<> schedule(std::int64_t startFrame, bool andPlay);
    Result<> moveTo(std::optional<std::uint32_t> device, std::int64_t position, bool wasPlaying);
    [[nodiscard]] std::int64_t frameAt(double seconds) const;
    [[nodiscard]] std::int64_t elapsedFrames() const;
    std::shared_ptr<AudioFile> takeOpened(const QString& path);
    void follow(NextFile next);
    void dropPending();
    std::function<void()> completion();
    void endOfPlayback(std::int64_t generation);
    void post(std::function<void()> call);

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
    double m_trackGain = 0;                ///< dB
    bool m_playing = false;
    std::optional<std::uint32_t> m_device;

    FileOpener m_opener;    ///< opens the file that is to play or, while one does, may follow it
    NextFile m_pendingNext; ///< scheduled behind the current one
    NextFile m_setAside;    ///< opened, but of another format: can be loaded
};

} // namespace halvane
