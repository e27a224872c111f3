// SPDX-License-Identifier: MIT
#pragma once

#include "audio/analysis/programme_loudness.h"

#include <QString>

#include <optional>
#include <stop_token>

namespace halvane::LoudnessAnalyzer {

/// How loud a file is. In dBFS, digital silence reads -180.
struct Measurement {
    double rmsDb = 0;  ///< root mean square over all samples of all channels
    double peakDb = 0; ///< largest absolute sample of any channel
    ProgrammeLoudness programme{};

    bool operator==(const Measurement&) const = default;
};

/// Decodes a whole file and measures it; of a file that breaks off, the part that was read. None
/// when nothing could be read, or when asked to stop. Blocking; any thread but the main and the
/// audio thread.
std::optional<Measurement> measure(const QString& path, std::stop_token stop = {});

} // namespace halvane::LoudnessAnalyzer
