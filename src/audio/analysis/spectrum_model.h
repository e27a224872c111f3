// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QObject>

#include <array>

namespace halvane {

inline constexpr int spectrumBandCount = 48;
using SpectrumBands = std::array<float, spectrumBandCount>;

/// One result of the spectrum analysis. Heights are 0...0.92, lowest band first; the level 0...1.
struct SpectrumOutput {
    SpectrumBands bands{};
    SpectrumBands peaks{};
    float level = 0;
    bool clips = false; ///< within the last half second a sample passed full scale
};

/// The live spectrum of what is heard, as the views show it; keeps the last values while nothing
/// plays. Results come only while somebody watches. Main thread only.
class SpectrumModel : public QObject {
    Q_OBJECT
    Q_PROPERTY(QList<float> bands READ bandList NOTIFY changed)
    Q_PROPERTY(QList<float> peaks READ peakList NOTIFY changed)
    Q_PROPERTY(float level READ level NOTIFY changed)
    /// What is heard now, or was half a second ago, passes full scale and is cut off by the device.
    Q_PROPERTY(bool clips READ clips NOTIFY clipsChanged)

  public:
    using QObject::QObject;

    [[nodiscard]] const SpectrumBands& bands() const { return m_output.bands; }
    [[nodiscard]] const SpectrumBands& peaks() const { return m_output.peaks; }
    [[nodiscard]] float level() const { return m_output.level; }
    [[nodiscard]] bool clips() const { return m_output.clips; }

    /// A view that comes into sight calls beginWatching, and endWatching when it goes out of sight.
    Q_INVOKABLE void beginWatching();
    Q_INVOKABLE void endWatching();
    [[nodiscard]] bool isWatched() const { return m_watchers > 0; }

    /// Shows a new result.
    void publish(const SpectrumOutput& output);

  Q_SIGNALS:
    /// Bands, peaks and level together.
    void changed();
    void clipsChanged();
    void watchedChanged();

  private:
    [[nodiscard]] QList<float> bandList() const {
        return {m_output.bands.begin(), m_output.bands.end()};
    }
    [[nodiscard]] QList<float> peakList() const {
        return {m_output.peaks.begin(), m_output.peaks.end()};
    }

    SpectrumOutput m_output;
    int m_watchers = 0;
};

} // namespace halvane
