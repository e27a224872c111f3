// SPDX-License-Identifier: MIT
#pragma once

#include "model/enums.h"

#include <QString>

namespace halvane {

/// One line with the numbers of tracks and albums and the size of their files. Pure; any thread.
QString librarySummary(std::size_t tracks, std::size_t albums, qint64 bytes,
                       ResolvedLanguage language);

} // namespace halvane
