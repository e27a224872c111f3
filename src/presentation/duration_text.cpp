// SPDX-License-Identifier: MIT
#include "presentation/duration_text.h"

namespace halvane {

QString formatDuration(double seconds) {
    const auto whole = static_cast<qint64>(seconds);
    const auto twoDigits = [](qint64 number) {
        return QString::number(number).rightJustified(2, QLatin1Char('0'));
    };
    const QString tail = QLatin1Char(':') + twoDigits(whole % 60);
    if (whole < 3600)
        return QString::number(whole / 60) + tail;
    return QString::number(whole / 3600) + QLatin1Char(':') + twoDigits(whole / 60 % 60) + tail;
}

} // namespace halvane
