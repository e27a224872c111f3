// SPDX-License-Identifier: MIT
// What one spectrum costs, and what the tap costs the audio thread.
#include "audio/analysis/spectrum_analyzer.h"
#include "audio/analysis/tap_buffer.h"

#include <benchmark/benchmark.h>

#include <cmath>
#include <vector>

namespace {

using namespace halvane;

std::vector<float> tone(std::size_t count) {
    std::vector<float> samples(count);
    for (std::size_t i = 0; i < count; ++i)
        samples[i] = 0.3F * std::sin(0.05F * float(i)) + 0.1F * std::sin(0.71F * float(i));
    return samples;
}

void perResult(benchmark::State& state) {
    const auto samples = tone(SpectrumAnalyzer::blockFrames);
    SpectrumAnalyzer analyzer;
    double now = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(analyzer.processIfDue(samples, double(state.range(0)), now));
        now += 1;
    }
}
BENCHMARK(perResult)->Arg(44'100)->Arg(192'000)->Unit(benchmark::kMicrosecond);

void window(benchmark::State& state) {
    TapBuffer buffer(1 << 17);
    const auto samples = tone(2 * 65'536);
    buffer.push(samples.data(), 65'536, 2, 0);
    std::vector<float> room(SpectrumAnalyzer::blockFrames);
    std::int64_t heard = 4096;
    for (auto _ : state)
        benchmark::DoNotOptimize(buffer.newest(heard++ % 60'000 + 2048, room));
}
BENCHMARK(window)->Unit(benchmark::kMicrosecond);

void pushPerSecondOfSound(benchmark::State& state) {
    constexpr std::size_t block = 441;
    TapBuffer buffer(1 << 17);
    const auto samples = tone(2 * block);
    std::int64_t at = 0;
    for (auto _ : state)
        for (int i = 0; i < 100; ++i, at += block)
            buffer.push(samples.data(), block, 2, at);
}
BENCHMARK(pushPerSecondOfSound)->Unit(benchmark::kMicrosecond);

} // namespace
