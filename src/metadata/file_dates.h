// SPDX-License-Identifier: MIT
#pragma once

#include "model/file_url.h"

#include <ctime>
#include <stop_token>
#include <vector>

namespace halvane {

/// Seconds between 1970-01-01 and 2001-01-01 UTC, from which file dates are counted.
inline constexpr double referenceDateOffset = 978307200.0;

/// A file time as seconds since 2001-01-01 UTC. Shifting the whole part first keeps as many digits
/// of the fraction as a double holds.
inline double referenceDate(const timespec& time) {
    return (static_cast<double>(time.tv_sec) - referenceDateOffset) +
           static_cast<double>(time.tv_nsec) * 1e-9;
}

/// The attributes of a file.
struct FileFacts {
    bool exists = false;
    double modificationDate = 0; ///< seconds since 2001-01-01 UTC
    qint64 size = 0;             ///< bytes
};

/// Never opens the file. Any thread; may block on the disk.
FileFacts fileFacts(const QString& path);

/// The same of many files, on several threads. Files whose disk does not answer, and those that are
/// left when a stop is requested, look as if they were missing.
std::vector<FileFacts> fileFacts(const std::vector<FileUrl>& files, const std::stop_token& stop);

} // namespace halvane
