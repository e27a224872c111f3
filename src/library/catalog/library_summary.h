// SPDX-License-Identifier: MIT
#pragma once

#include "model/enums.h"

#include <QString>

namespace halvane {

/// One line about the library: how many tracks and albums, and how many bytes their files have.
/// Pure; any thread.
QString librarySummary(std::size_t tracks, std::size_t albums, qint64 bytes,
                       ResolvedLanguage language);

} // namespace halvane
