// SPDX-License-Identifier: MIT
// Texts that say what the transport is doing. Pure; any thread.
#pragma once

#include "model/enums.h"

#include <QString>

#include <cstddef>
#include <optional>

namespace halvane {

/// The length beside the progress line. `duration` is the entry's own text; the remaining time is
/// shown when it is asked for and the length is known.
QString durationDisplay(const QString& duration, std::optional<double> durationSeconds,
                        bool showRemaining, double elapsedSeconds);
/// What durationDisplay is without any entry.
QString noDurationDisplay();

/// "3 / 12" for the entry at a zero-based place; empty without one.
QString queuePositionText(std::optional<std::size_t> place, std::size_t count);

/// What a queue still holds, or holds in all, and how long that takes; empty for nothing.
QString queueLeftText(std::size_t count, double seconds, ResolvedLanguage language);
QString queueTotalText(std::size_t count, double seconds, ResolvedLanguage language);

/// "Playing from: ..." with the label, or with the library.
QString queueSourceText(const std::optional<QString>& label, ResolvedLanguage language);

} // namespace halvane
