// SPDX-License-Identifier: MIT
#include "library/catalog/search_ranges.h"

#include "metadata/file_dates.h"

#include <QDateTime>
#include <QTimeZone>

#include <algorithm>

namespace halvane {

namespace {

// What stands before a value.
struct Operator {
    bool isLess = false;
    bool isMore = false;
    bool isWithEqual = false;
};

Operator takeOperator(QStringView& text) {
    Operator found;
    found.isLess = text.startsWith(u'<');
    found.isMore = text.startsWith(u'>');
    if (found.isLess || found.isMore)
        text = text.sliced(1);
    found.isWithEqual = text.startsWith(u'=');
    if (found.isWithEqual)
        text = text.sliced(1);
    return found;
}

// A value stands for all that is in it, as a year does for its seconds.
NumberRange compared(const Operator& how, const NumberRange& value) {
    NumberRange range;
    if (!how.isLess)
        range.least = how.isMore && !how.isWithEqual ? value.most + 1 : value.least;
    if (!how.isMore)
        range.most = how.isLess && !how.isWithEqual ? value.least - 1 : value.most;
    return range;
}

// Either end may be left open.
template<typename Value>
std::optional<NumberRange> between(QStringView first, QStringView last, Value valueIn) {
    NumberRange range;
    const auto least = valueIn(first);
    const auto most = valueIn(last);
    if ((!least && !first.isEmpty()) || (!most && !last.isEmpty()) || (!least && !most))
        return std::nullopt;
    if (least)
        range.least = least->least;
    if (most)
        range.most = most->most;
    return range;
}

std::optional<NumberRange> numberIn(QStringView text) {
    bool isNumber = false;
    const qint64 number = text.toInt(&isNumber);
    return isNumber && number >= 0 ? std::optional(NumberRange{number, number}) : std::nullopt;
}

qint64 secondsAt(const QDateTime& moment) {
    return moment.toSecsSinceEpoch() - static_cast<qint64>(referenceDateOffset);
}

// A year, a month or a day.
std::optional<NumberRange> dateIn(QStringView text, const QDateTime& now) {
    const auto parts = text.split(u'-');
    const auto year = numberIn(parts[0]);
    if (!year || parts[0].size() != 4 || parts.size() > 3)
        return std::nullopt;
    const auto month = parts.size() > 1 ? numberIn(parts[1]) : std::nullopt;
    const auto day = parts.size() > 2 ? numberIn(parts[2]) : std::nullopt;
    const QDate first(static_cast<int>(year->least), month ? static_cast<int>(month->least) : 1,
                      day ? static_cast<int>(day->least) : 1);
    if (!first.isValid() || (parts.size() > 1 && !month) || (parts.size() > 2 && !day))
        return std::nullopt;
    const QDate next = day ? first.addDays(1) : month ? first.addMonths(1) : first.addYears(1);
    const auto startOf = [&now](QDate date) {
        return QDateTime(date, QTime(0, 0), now.timeZone());
    };
    return NumberRange{secondsAt(startOf(first)), secondsAt(startOf(next)) - 1};
}

// The moment that is so long ago. Units are letters, or Chinese.
std::optional<QDateTime> momentAgo(QStringView text, const QDateTime& now) {
    const auto count = text.isEmpty() ? std::nullopt : numberIn(text.chopped(1));
    if (!count)
        return std::nullopt;
    const int number = static_cast<int>(std::min<qint64>(count->least, 10'000));
    switch (text.back().toLower().unicode()) {
    case u'd':
    case u'天':
        return now.addDays(-number);
    case u'w':
    case u'周':
        return now.addDays(-7 * qint64(number));
    case u'm':
    case u'月':
        return now.addMonths(-number);
    case u'y':
    case u'年':
        return now.addYears(-number);
    default:
        return std::nullopt;
    }
}

bool isOnlyOf(QStringView text, QStringView units) {
    return std::all_of(text.cbegin(), text.cend(),
                       [units](QChar unit) { return units.contains(unit); });
}

std::optional<NumberRange> anyDateRangeIn(QStringView text, const QDateTime& now) {
    if (const qsizetype dots = text.indexOf(u".."); dots >= 0)
        return between(text.first(dots), text.sliced(dots + 2),
                       [&now](QStringView date) { return dateIn(date, now); });
    const Operator how = takeOperator(text);
    if (const auto moment = momentAgo(text, now)) {
        const qint64 then = secondsAt(*moment);
        return how.isMore ? NumberRange{1, then - 1}
                          : NumberRange{then, std::numeric_limits<qint64>::max()};
    }
    const auto date = dateIn(text, now);
    return date ? std::optional(compared(how, *date)) : std::nullopt;
}

} // namespace

std::optional<NumberRange> numberRangeIn(QStringView text) {
    if (const qsizetype dots = text.indexOf(u".."); dots >= 0)
        return between(text.first(dots), text.sliced(dots + 2), numberIn);
    if (const qsizetype dash = text.indexOf(u'-'); dash > 0)
        return between(text.first(dash), text.sliced(dash + 1), numberIn);
    const Operator how = takeOperator(text);
    const auto number = numberIn(text);
    return number ? std::optional(compared(how, *number)) : std::nullopt;
}

std::optional<NumberRange> dateRangeIn(QStringView text, const QDateTime& now) {
    auto range = anyDateRangeIn(text, now);
    if (range)
        range->least = std::max<qint64>(range->least, 1);
    return range;
}

bool isUnfinishedNumberRange(QStringView text) {
    return isOnlyOf(text, u"<>=.");
}

bool isUnfinishedDateRange(QStringView text) {
    return isOnlyOf(text, u"<>=.-0123456789");
}

} // namespace halvane
