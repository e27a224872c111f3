// SPDX-License-Identifier: MIT
// The numbers and dates that a search asks for. Pure; any thread.
#pragma once

#include <QStringView>

#include <limits>
#include <optional>

class QDateTime;

namespace halvane {

struct NumberRange {
    qint64 least = 0;
    qint64 most = std::numeric_limits<qint64>::max();

    bool operator==(const NumberRange&) const = default;
};

/// Of 5, >5, >=5, <5, <=5, 1..5, 1-5, 1.. and ..5. None for anything else.
std::optional<NumberRange> numberRangeIn(QStringView text);

/// In whole seconds since 2001-01-01 UTC, at least 1. A date is a year, a month or a day (2025,
/// 2025-03, 2025-03-31) and stands for all of it, in the time zone of `now`; it takes the same
/// operators as a number, and "..". An age (30d, 2w, 6m, 1y) means since then, or before that after
/// ">". None for anything else.
std::optional<NumberRange> dateRangeIn(QStringView text, const QDateTime& now);

/// Whether a text may become a range while it is typed.
bool isUnfinishedNumberRange(QStringView text);
bool isUnfinishedDateRange(QStringView text);

} // namespace halvane
