// SPDX-License-Identifier: MIT
#include "support/golden.h"

#include <gtest/gtest.h>

#include <cmath>
#include <fstream>
#include <iomanip>
#include <vector>

namespace halvane::test {
namespace {

std::vector<float> read(const std::string& path) {
    std::ifstream file(path);
    std::vector<float> samples;
    for (float sample = 0; file >> sample;)
        samples.push_back(sample);
    return samples;
}

void write(const std::string& path, std::span<const float> samples) {
    std::ofstream file(path);
    file << std::setprecision(9);
    for (const float sample : samples)
        file << sample << '\n';
}

std::size_t firstDifference(std::span<const float> a, std::span<const float> b, float tolerance) {
    std::size_t i = 0;
    while (i < a.size() && i < b.size() && std::abs(a[i] - b[i]) <= tolerance)
        ++i;
    return i;
}

} // namespace

void expectGolden(const char* name, std::span<const float> samples, float tolerance) {
    const std::string base = std::string(HALVANE_GOLDEN_FOLDER "/") + name;
    const auto golden = read(base + ".txt");
    const auto same = firstDifference(golden, samples, tolerance);
    if (same == golden.size() && same == samples.size() && same > 0) {
        std::remove((base + ".new.txt").c_str());
        return;
    }
    write(base + ".new.txt", samples);
    ADD_FAILURE() << name << ": differs from sample " << same << " on (" << golden.size()
                  << " kept, " << samples.size() << " new); the new ones are in " << base
                  << ".new.txt";
}

} // namespace halvane::test
