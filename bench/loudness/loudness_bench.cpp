// SPDX-License-Identifier: MIT
// The loudness pass beside decoding alone and beside other programs that measure, by processor time
// on the same file. Run with
//   --benchmark_enable_random_interleaving=true --benchmark_repetitions=9
//   --benchmark_report_aggregates_only=true
// and compare medians. loudgain is left out where it is not installed.
#include "audio/analysis/loudness_analyzer.h"
#include "support/bench_audio.h"

#include <QProcess>
#include <QStandardPaths>

#include <benchmark/benchmark.h>

#include <functional>
#include <string>
#include <sys/resource.h>

namespace {

using namespace halvane;
using namespace halvane::bench;
using namespace Qt::StringLiterals;

double processorSeconds(int who) {
    rusage usage{};
    getrusage(who, &usage);
    return double(usage.ru_utime.tv_sec + usage.ru_stime.tv_sec) +
           double(usage.ru_utime.tv_usec + usage.ru_stime.tv_usec) * 1e-6;
}

void timed(benchmark::State& state, int who, const std::function<bool()>& work) {
    for (auto _ : state) {
        const double begin = processorSeconds(who);
        if (!work())
            state.SkipWithError("nothing was measured");
        state.SetIterationTime(processorSeconds(who) - begin);
    }
    state.counters["x realtime"] = benchmark::Counter(
        double(materialSeconds) * double(state.iterations()), benchmark::Counter::kIsRate);
}

void add(const std::string& name, int who, std::function<bool()> work) {
    benchmark::RegisterBenchmark(name.c_str(),
                                 [who, work](benchmark::State& state) { timed(state, who, work); })
        ->UseManualTime()
        ->Unit(benchmark::kMillisecond);
}

bool runs(const QString& program, const QStringList& arguments) {
    QProcess process;
    process.start(program, arguments);
    process.closeWriteChannel();
    return process.waitForFinished(-1) && process.exitCode() == 0;
}

} // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    const QString loudgain = QStandardPaths::findExecutable(u"loudgain"_s);
    for (const std::size_t kind : {0U, 1U, 2U}) {
        const QString path = fileOf(materials[kind]);
        const std::string name = materials[kind].name;
        add(name + " decoding alone", RUSAGE_SELF, [path] { return decodeBare(path) > 0; });
        add(name + " measure", RUSAGE_SELF,
            [path] { return LoudnessAnalyzer::measure(path).has_value(); });
        add(name + " volumedetect", RUSAGE_CHILDREN, [path] {
            return runs(u"ffmpeg"_s, {u"-nostdin"_s, u"-threads"_s, u"1"_s, u"-i"_s, path, u"-af"_s,
                                      u"volumedetect"_s, u"-f"_s, u"null"_s, u"-"_s});
        });
        if (!loudgain.isEmpty())
            add(name + " loudgain", RUSAGE_CHILDREN, [path, loudgain] {
                return runs(loudgain, {u"-q"_s, path});
            });
    }
    benchmark::RunSpecifiedBenchmarks();
}
