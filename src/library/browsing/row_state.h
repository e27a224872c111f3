// SPDX-License-Identifier: MIT
#pragma once

#include "model/enums.h"

#include <QString>

#include <functional>

namespace halvane {

class CoverStore;

/// What the lists show of a track beyond its record, asked by its standardized path when a row is
/// drawn: the state has other owners, and no list keeps a copy. Main thread.
struct RowState {
    std::function<bool(const QString& path)> isLoved;
    std::function<int(const QString& path)> rating; ///< 0...5
    std::function<TrackAvailability(const QString& path)> availability;
    std::function<bool(const QString& path)> isCurrent;
    CoverStore* covers = nullptr;
};

} // namespace halvane
