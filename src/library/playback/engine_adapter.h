// SPDX-License-Identifier: MIT
#pragma once

#include "audio/graph/playback_engine.h"
#include "library/playback/transport_engine.h"

namespace halvane {

/// The real engine behind the transport's view of it.
class EngineAdapter final : public TransportEngine {
  public:
    explicit EngineAdapter(AudioPlaybackEngine& engine)
        : m_engine(engine) {}

    std::optional<QString> load(const QString& path) override { return m_engine.load(path); }
    void unload() override { m_engine.unload(); }
    bool hasFile() const override { return m_engine.hasFile(); }
    double durationSeconds() const override { return m_engine.durationSeconds(); }
    std::optional<QString> scheduleSegment(double fromSeconds, bool andPlay) override {
        return m_engine.scheduleSegment(fromSeconds, andPlay);
    }
    void pause() override { m_engine.pause(); }
    std::optional<QString> resume() override { return m_engine.resume(); }
    bool isPlaying() const override { return m_engine.isPlaying(); }
    double elapsedSeconds() const override { return m_engine.elapsedSeconds(); }
    bool prescheduleNextIfCompatible(const QString& path) override {
        return m_engine.prescheduleNextIfCompatible(path);
    }
    std::optional<QString> adoptPrescheduledTrack() override {
        return m_engine.adoptPrescheduledTrack();
    }
    void invalidatePreschedule() override { m_engine.invalidatePreschedule(); }
    void setTrackGain(double dB) override { m_engine.setTrackGain(dB); }
    void setVolume(double volume) override { m_engine.setVolume(volume); }

  private:
    AudioPlaybackEngine& m_engine;
};

} // namespace halvane
