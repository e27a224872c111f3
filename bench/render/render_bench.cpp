// SPDX-License-Identifier: MIT
#include "audio/analysis/spectrum_model.h"
#include "audio/analysis/spectrum_tap.h"
#include "audio/graph/decoder_thread.h"
#include "audio/graph/equalizer.h"
#include "audio/graph/equalizer_kernel.h"
#include "audio/graph/render_graph.h"

#include <benchmark/benchmark.h>

#include <array>
#include <cmath>
#include <vector>

namespace halvane {
namespace {

/// Only asked how far the ear has come.
class NoOutput final : public SoundOutput {
  public:
    Result<> open(const StreamFormat&, RenderSource&) override { return {}; }
    void close() override {}
    bool isOpen() const override { return false; }
    Result<> start() override { return {}; }
    void pause() override {}
    bool isRunning() const override { return false; }
    void flush() override {}
    std::int64_t framesRendered() const override { return 0; }
    std::int64_t framesHeard() const override { return 0; }
    int deviceSampleRate() const override { return 0; }
    Result<> setDevice(std::optional<std::uint32_t>) override { return {}; }
};

std::vector<float> noise(std::size_t samples) {
    std::vector<float> values(samples);
    std::uint32_t state = 1;
    for (float& value : values) {
        state = state * 1664525u + 1013904223u;
        value = float(std::int32_t(state)) / 8589934592.0f;
    }
    return values;
}

const EqualizerValues everyBand{true, {4, 3, 1, 2, -1, 1, 1, 3, 4, 4}, -3};

/// One second of sound through the audio callback, 10 ms at a time, as the server asks for it. What
/// it takes of the processor is the share of a core: 1000 us are 0.1 %.
void renderSecond(benchmark::State& state, bool everythingOn) {
    const StreamFormat format{int(state.range(0)), int(state.range(1)), 0};
    NoOutput output;
    SpectrumModel model;
    SpectrumTap tap(model, output);
    DecoderThread decoder([](std::uint64_t, std::int64_t) {});
    const auto pipe = std::make_shared<StreamPipe>(format);
    RenderGraph graph(decoder, everythingOn ? &tap : nullptr);
    graph.beginStream(pipe);
    if (everythingOn) {
        graph.setEqualizer(equalizerCurve(everyBand, format.sampleRate));
        graph.setVolume(0.3f);
        model.beginWatching();
        tap.beginStream(format);
        tap.setActive(true);
    }
    pipe->request(1);
    pipe->begin(1);
    const auto second = noise(std::size_t(format.sampleRate) * pipe->channels());
    const auto frames = std::size_t(format.sampleRate) / 100;
    std::vector<float> block(frames * pipe->channels());
    for (auto _ : state) {
        state.PauseTiming();
        pipe->samples.write(second.data(), second.size());
        state.ResumeTiming();
        for (int i = 0; i < 100; ++i) {
            graph.render(block.data(), frames);
            benchmark::DoNotOptimize(block.data());
        }
    }
}

void renderUntouched(benchmark::State& state) {
    renderSecond(state, false);
}

void renderEverythingOn(benchmark::State& state) {
    renderSecond(state, true);
}

#define FORMATS                                                                                    \
    Args({44'100, 2})->Args({192'000, 2})->Args({48'000, 6})->Unit(benchmark::kMicrosecond)
BENCHMARK(renderUntouched)->FORMATS;
BENCHMARK(renderEverythingOn)->FORMATS;

/// The ten bands over one second of stereo: both channels of a frame at once, or one by one.
template<typename Lane>
void equalizeSecond(benchmark::State& state) {
    using namespace equalizer_kernel;
    const auto rate = std::size_t(state.range(0));
    const auto curve = equalizerCurve(everyBand, int(rate));
    std::array<Band, equalizerBandCount> bands;
    for (std::size_t b = 0; b < bands.size(); ++b)
        bands[b] = {curve.bands[b].filter};
    constexpr std::size_t lanes = sizeof(Lane) / sizeof(double);
    std::array<std::array<FilterState<Lane>, equalizerBandCount>, 2 / lanes> states{};
    const auto second = noise(rate * 2);
    auto samples = second;
    for (auto _ : state) {
        samples = second; // or the gains would pile up
        for (std::size_t channel = 0; channel < 2; channel += lanes) {
            run<Lane, false>(samples.data() + channel, rate, 2, bands, {curve.preamp, 0},
                             states[channel / lanes]);
        }
        benchmark::DoNotOptimize(samples.data());
    }
}

BENCHMARK(equalizeSecond<double>)->Arg(44'100)->Arg(192'000)->Unit(benchmark::kMicrosecond);
BENCHMARK(equalizeSecond<equalizer_kernel::StereoLane>)
    ->Arg(44'100)
    ->Arg(192'000)
    ->Unit(benchmark::kMicrosecond);

} // namespace
} // namespace halvane
