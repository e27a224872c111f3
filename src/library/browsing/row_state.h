// SPDX-License-Identifier: MIT
#pragma once

#include "model/enums.h"

#include <QString>

#include <functional>

namespace halvane {

class CoverStore;

/// What the lists show of a track beyond its record. A list asks by standardized path when it draws
/// a row, and keeps no copy, because other concerns own this state. Main thread.
struct RowState {
    std::function<bool(const QString& path)> isLoved;
    std::function<int(const QString& path)> rating; ///< 0...5
    std::function<qint64(const QString& path)> plays;
    std::function<TrackAvailability(const QString& path)> availability;
    std::function<bool(const QString& path)> isCurrent;
    CoverStore* covers = nullptr;
};

} // namespace halvane
