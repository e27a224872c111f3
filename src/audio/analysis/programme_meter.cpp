// SPDX-License-Identifier: MIT
#include "audio/analysis/programme_meter.h"

#include <algorithm>
#include <cmath>

namespace halvane {

namespace {

// Weighed together, so that the frames in front cost little beside them.
constexpr std::size_t hopsAtOnce = 16;

} // namespace

ProgrammeMeter::ProgrammeMeter(const StreamFormat& format)
    : m_weighting(format)
    , m_peak(format)
    , m_channels(std::size_t(format.channels))
    , m_front(std::max(m_weighting.memoryFrames(), m_peak.memoryFrames()))
    , m_samples((m_front + hopsAtOnce * m_weighting.hopFrames()) * m_channels) {
}

std::span<float> ProgrammeMeter::room() {
    constexpr std::size_t mostSamples = 8192;
    const std::size_t begin = (m_front + m_waiting) * m_channels;
    const std::size_t frames =
        std::min(mostSamples / m_channels, (m_samples.size() - begin) / m_channels);
    return std::span(m_samples).subspan(begin, frames * m_channels);
}

void ProgrammeMeter::add(std::size_t frames) {
    m_peak.add(m_samples.data() + (m_front + m_waiting) * m_channels, frames);
    m_waiting += frames;
    if ((m_front + m_waiting) * m_channels == m_samples.size())
        weigh(hopsAtOnce);
}

void ProgrammeMeter::weigh(std::size_t hops) {
    const std::size_t frames = hops * m_weighting.hopFrames();
    m_weighting.add(m_samples.data() + m_front * m_channels, hops, m_energies);
    const auto begin = m_samples.begin();
    std::copy(begin + std::ptrdiff_t(frames * m_channels),
              begin + std::ptrdiff_t((m_front + m_waiting) * m_channels), begin);
    m_waiting -= frames;
}

ProgrammeLoudness ProgrammeMeter::result() {
    if (const std::size_t hops = m_waiting / m_weighting.hopFrames(); hops > 0)
        weigh(hops);
    ProgrammeLoudness result = programmeLoudness(m_energies);
    result.truePeakDb = 20 * std::log10(std::max(m_peak.peak(), 1e-9));
    return result;
}

} // namespace halvane
