// SPDX-License-Identifier: MIT
#pragma once

#include "audio/graph/equalizer.h"

#include <vector>

namespace halvane {

class RenderGraph;

/// What the user has set the audio graph to, kept from file to file and within its limits. Main
/// thread.
class GraphSettings {
  public:
    /// The graph must outlive this.
    explicit GraphSettings(RenderGraph& graph);

    /// The graph is about to play at this rate in Hz, for which its filters are made anew.
    void setSampleRate(int sampleRate);
    /// Gains and preamp in dB, each clamped to -12...+12; missing gains keep their bands.
    void setEQ(bool enabled, const std::vector<double>& gains, double preamp);
    /// 0...1, clamped.
    void setVolume(double volume);

  private:
    void applyEQ();

    RenderGraph& m_graph;
    int m_sampleRate = 0; ///< none yet
    EqualizerValues m_equalizer;
};

} // namespace halvane
