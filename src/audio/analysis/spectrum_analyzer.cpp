// SPDX-License-Identifier: MIT
#include "audio/analysis/spectrum_analyzer.h"

#include "libav/functions.h"

#include <algorithm>
#include <cmath>
#include <new>
#include <numbers>

namespace halvane {

using namespace libav;

namespace {

constexpr std::size_t N = SpectrumAnalyzer::blockFrames;
constexpr int lastBin = N / 2 - 1;

constexpr double lowestFrequency = 30;     // Hz
constexpr double highestFrequency = 16000; // Hz

constexpr float rangeDb = 44;
constexpr float lowestReferenceDb = -52;
constexpr float attack = 0.35F;
constexpr float release = 0.015F;
constexpr float tallest = 0.92F;
constexpr float bandDecay = 0.82F;
constexpr float peakDecay = 0.94F;
constexpr float levelGain = 3.2F;

/// A broken file may hold any number, or none. One that is far beyond full scale would put the
/// reference out of reach of all that follows.
float shown(float sample) {
    constexpr float loudest = 16;
    return std::isfinite(sample) ? std::clamp(sample, -loudest, loudest) : 0;
}

} // namespace

/// The windowed Fourier transform of a block of real samples.
class SpectrumAnalyzer::Transform {
  public:
    Transform() {
        const float scale = 1;
        if (!libav::load() || av_tx_init(&m_context, &m_run, AV_TX_FLOAT_RDFT, 0, N, &scale, 0) < 0)
            throw std::bad_alloc();
        for (std::size_t n = 0; n < N; ++n)
            m_window[n] = float(0.5 * (1 - std::cos(2 * std::numbers::pi * double(n) / double(N))));
    }
    ~Transform() { av_tx_uninit(&m_context); }
    Transform(const Transform&) = delete;
    Transform& operator=(const Transform&) = delete;

    /// The block to be transformed, oldest sample first.
    std::array<float, N>& samples() { return m_samples; }

    void run() {
        for (std::size_t n = 0; n < N; ++n)
            m_samples[n] *= m_window[n];
        m_run(m_context, m_spectrum.data(), m_samples.data(), sizeof(float));
    }

    [[nodiscard]] float power(int bin) const {
        const AVComplexFloat& value = m_spectrum[std::size_t(bin)];
        return value.re * value.re + value.im * value.im;
    }

  private:
    AVTXContext* m_context = nullptr;
    av_tx_fn m_run = nullptr;
    std::array<float, N> m_window{};
    alignas(64) std::array<float, N> m_samples{}; // aligned for the widest vector instructions
    alignas(64) std::array<AVComplexFloat, N / 2 + 1> m_spectrum{};
};

SpectrumAnalyzer::SpectrumAnalyzer() = default;

SpectrumAnalyzer::~SpectrumAnalyzer() = default;

std::optional<SpectrumOutput> SpectrumAnalyzer::processIfDue(std::span<const float> samples,
                                                             double sampleRate, double now) {
    if (samples.empty() || (m_lastTime && now - *m_lastTime < interval))
        return std::nullopt;
    m_lastTime = now;
    if (!m_transform)
        m_transform = std::make_unique<Transform>();
    if (sampleRate != m_sampleRate)
        layOut(sampleRate);

    const auto newest = samples.last(std::min(samples.size(), N));
    auto& block = m_transform->samples();
    std::fill(block.begin(), block.end() - std::ptrdiff_t(newest.size()), 0.0F);
    std::transform(newest.begin(), newest.end(), block.end() - std::ptrdiff_t(newest.size()),
                   shown);
    float squares = 0;
    for (const float sample : block)
        squares += sample * sample;
    m_output.level = std::min(std::sqrt(squares / float(N)) * levelGain, 1.0F);

    m_transform->run();
    updateBands();
    return m_output;
}

/// Divides the axis from 30 Hz to 16 kHz, or to a bin below half the rate, into bands of one ratio.
void SpectrumAnalyzer::layOut(double sampleRate) {
    m_sampleRate = sampleRate;
    const double binWidth = sampleRate / double(N);
    const double top = std::min(sampleRate / 2 - binWidth, highestFrequency);
    const double ratio = std::pow(top / lowestFrequency, 1.0 / spectrumBandCount);
    for (int i = 0; i < spectrumBandCount; ++i) {
        const double low = lowestFrequency * std::pow(ratio, i);
        const int first = std::clamp(int(low / binWidth), 1, lastBin);
        m_bins[std::size_t(i)] = {first, std::clamp(int(low * ratio / binWidth), first, lastBin)};
    }
}

void SpectrumAnalyzer::updateBands() {
    SpectrumBands bandDb;
    float loudest = -120;
    for (std::size_t i = 0; i < bandDb.size(); ++i) {
        const auto [first, last] = m_bins[i];
        float sum = 0;
        for (int bin = first; bin <= last; ++bin)
            sum += m_transform->power(bin);
        bandDb[i] = 10 * std::log10(std::max(sum / float(last - first + 1), 1e-12F));
        loudest = std::max(loudest, bandDb[i]);
    }

    const float pace = m_referenceDb < loudest ? attack : release;
    m_referenceDb = std::max(m_referenceDb + (loudest - m_referenceDb) * pace, lowestReferenceDb);

    for (std::size_t i = 0; i < bandDb.size(); ++i) {
        const float height = (bandDb[i] - (m_referenceDb - rangeDb)) / rangeDb;
        const float target = std::clamp(height, 0.0F, 1.0F) * tallest;
        float& band = m_output.bands[i];
        float& peak = m_output.peaks[i];
        band = std::max(target, band * bandDecay);
        peak = std::max(band, peak * peakDecay);
    }
}

} // namespace halvane
