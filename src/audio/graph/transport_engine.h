// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <optional>

namespace halvane {

/// What the transport needs of the playback engine, so that its rules can be tried without sound.
/// The meanings are AudioPlaybackEngine's. Main thread.
class TransportEngine {
  public:
    virtual ~TransportEngine() = default;

    [[nodiscard]] virtual std::optional<QString> load(const QString& path) = 0;
    virtual void unload() = 0;
    [[nodiscard]] virtual bool hasFile() const = 0;
    [[nodiscard]] virtual double durationSeconds() const = 0;
    [[nodiscard]] virtual std::optional<QString> scheduleSegment(double fromSeconds,
                                                                 bool andPlay) = 0;
    virtual void pause() = 0;
    [[nodiscard]] virtual std::optional<QString> resume() = 0;
    [[nodiscard]] virtual bool isPlaying() const = 0;
    [[nodiscard]] virtual double elapsedSeconds() const = 0;
    virtual bool prescheduleNextIfCompatible(const QString& path) = 0;
    virtual std::optional<QString> adoptPrescheduledTrack() = 0;
    virtual void invalidatePreschedule() = 0;
    virtual void setTrackGain(double dB) = 0;
    virtual void setVolume(double volume) = 0;
};

} // namespace halvane
