// SPDX-License-Identifier: MIT
#include "audio/graph/graph_settings.h"

#include "audio/graph/render_graph.h"

#include <algorithm>

namespace halvane {

GraphSettings::GraphSettings(RenderGraph& graph)
    : m_graph(graph) {
    constexpr double usual = 0.72;
    setVolume(usual);
}

void GraphSettings::setSampleRate(int sampleRate) {
    m_sampleRate = sampleRate;
    applyEQ();
}

void GraphSettings::setEQ(bool enabled, const std::vector<double>& gains, double preamp) {
    const auto limited = [](double dB) {
        return std::clamp(dB, -equalizerGainLimit, equalizerGainLimit);
    };
    m_equalizer.enabled = enabled;
    for (std::size_t i = 0; i < std::min(gains.size(), m_equalizer.gains.size()); ++i)
        m_equalizer.gains[i] = limited(gains[i]);
    m_equalizer.preamp = limited(preamp);
    applyEQ();
}

void GraphSettings::setVolume(double volume) {
    m_graph.setVolume(static_cast<float>(std::clamp(volume, 0.0, 1.0)));
}

void GraphSettings::applyEQ() {
    if (m_sampleRate > 0)
        m_graph.setEqualizer(equalizerCurve(m_equalizer, m_sampleRate));
}

} // namespace halvane
