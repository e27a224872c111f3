// SPDX-License-Identifier: MIT
// Decoding through AudioFile beside bare libavcodec, on the same file and on one thread. Run with
//   --benchmark_enable_random_interleaving=true --benchmark_repetitions=9
//   --benchmark_report_aggregates_only=true
// and compare medians.
#include "audio/files/audio_file.h"
#include "support/bench_audio.h"

#include <benchmark/benchmark.h>

#include <string>
#include <vector>

namespace {

using namespace halvane;
using namespace halvane::bench;

void reportSpeed(benchmark::State& state) {
    state.counters["x realtime"] = benchmark::Counter(
        double(materialSeconds) * double(state.iterations()), benchmark::Counter::kIsRate);
}

void bare(benchmark::State& state, const QString& path) {
    for (auto _ : state)
        benchmark::DoNotOptimize(decodeBare(path));
    reportSpeed(state);
}

void throughAudioFile(benchmark::State& state, const QString& path) {
    std::vector<float> block(2 * 4096);
    for (auto _ : state) {
        const auto opened = AudioFile::open(path);
        std::int64_t frames = 0;
        while (const std::size_t count = (*opened)->read(block.data(), 4096))
            frames += std::int64_t(count);
        if (frames != (*opened)->lengthFrames())
            state.SkipWithError("the file was not read to its end");
    }
    reportSpeed(state);
}

void openOnly(benchmark::State& state, const QString& path) {
    for (auto _ : state)
        benchmark::DoNotOptimize(AudioFile::open(path));
}

} // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    for (const Material& material : materials) {
        const QString path = fileOf(material);
        const std::string name = material.name;
        benchmark::RegisterBenchmark((name + " libavcodec").c_str(), bare, path)
            ->Unit(benchmark::kMillisecond);
        benchmark::RegisterBenchmark((name + " AudioFile").c_str(), throughAudioFile, path)
            ->Unit(benchmark::kMillisecond);
        benchmark::RegisterBenchmark((name + " open").c_str(), openOnly, path)
            ->Unit(benchmark::kMicrosecond);
    }
    benchmark::RunSpecifiedBenchmarks();
}
