// SPDX-License-Identifier: MIT
#include "library/playback/signal_path.h"

#include <QStringList>

#include <cmath>

namespace halvane {

using namespace Qt::StringLiterals;

namespace {

QString kilohertz(double rate) {
    const double kHz = rate / 1000;
    return QString::asprintf(kHz == std::floor(kHz) ? "%.0f kHz" : "%.1f kHz", kHz);
}

} // namespace

QString signalPathDescription(const QueueItem& item, double fileRate, double outputRate) {
    QStringList parts;
    const auto words = item.quality.split(u' ', Qt::SkipEmptyParts);
    if (!words.isEmpty())
        parts += words.first();
    if (!item.bitDepth.isEmpty())
        parts += item.bitDepth;
    if (fileRate > 0 && outputRate > 0) {
        const QString output = kilohertz(outputRate);
        const bool resampled = std::abs(fileRate - outputRate) > 1;
        parts += resampled ? kilohertz(fileRate) + u" → "_s + output : output;
    }
    return parts.join(u" · "_s);
}

} // namespace halvane
