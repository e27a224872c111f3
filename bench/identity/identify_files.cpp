// SPDX-License-Identifier: MIT
// Prints for each kind of file in a folder the median of what it takes to read the tags, and to
// identify the sound behind that, in microseconds of processor time and of the clock.
#include "metadata/readers/file_reader.h"
#include "metadata/track_metadata_loader.h"

#include <QFileInfo>

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <map>

using namespace halvane;

namespace {

double microseconds(clockid_t clock) {
    timespec time;
    ::clock_gettime(clock, &time);
    return static_cast<double>(time.tv_sec) * 1e6 + static_cast<double>(time.tv_nsec) * 1e-3;
}

struct Times {
    std::vector<double> tags, identity, identityOnTheClock;
    std::size_t identified = 0;
};

double median(std::vector<double> values) {
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

} // namespace

int main(int argc, char** argv) {
    std::vector<QString> roots;
    for (int i = 1; i < argc; ++i)
        roots.push_back(QString::fromLocal8Bit(argv[i]));
    std::map<QString, Times> bySuffix;
    for (const FileUrl& file : TrackMetadataLoader::audioFileURLs(roots)) {
        Times& times = bySuffix[QFileInfo(file.path()).suffix().toLower()];
        const double start = microseconds(CLOCK_THREAD_CPUTIME_ID);
        AudioFileReading reading = readAudioFile(file.path());
        const double read = microseconds(CLOCK_THREAD_CPUTIME_ID);
        const double clock = microseconds(CLOCK_MONOTONIC);
        finishReading(file.path(), reading);
        times.identityOnTheClock.push_back(microseconds(CLOCK_MONOTONIC) - clock);
        times.identity.push_back(microseconds(CLOCK_THREAD_CPUTIME_ID) - read);
        times.tags.push_back(read - start);
        times.identified += reading.identity.isKnown() ? 1 : 0;
    }
    std::printf("%8s %7s %11s %8s %10s %9s\n", "kind", "files", "identified", "tags us", "sound us",
                "clock us");
    for (const auto& [suffix, times] : bySuffix)
        std::printf("%8s %7zu %11zu %8.0f %10.0f %9.0f\n", qPrintable(suffix), times.tags.size(),
                    times.identified, median(times.tags), median(times.identity),
                    median(times.identityOnTheClock));
    return 0;
}
