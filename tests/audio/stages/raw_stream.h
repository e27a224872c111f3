// SPDX-License-Identifier: MIT
#pragma once

#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

/// What the stage runners share: raw 32-bit floats on standard input and output, interleaved, so
/// that stages are joined by pipes and looked into with any tool that reads them.
namespace halvane::stages {

template<typename Process>
void pump(int channels, Process process) {
    std::vector<float> block(std::size_t(channels) * 480);
    for (;;) {
        const auto samples = std::fread(block.data(), sizeof(float), block.size(), stdin);
        const auto frames = samples / std::size_t(channels);
        if (frames == 0)
            return;
        process(block.data(), frames);
        std::fwrite(block.data(), sizeof(float), frames * std::size_t(channels), stdout);
    }
}

/// The arguments must be so many, or a line says what they are.
inline void expectArguments(int count, int atLeast, const char* usage) {
    if (count <= atLeast) {
        std::fprintf(stderr, "usage: %s\n", usage);
        std::exit(2);
    }
}

} // namespace halvane::stages
