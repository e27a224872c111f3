// SPDX-License-Identifier: MIT
#include "views/playing/spectrum_shapes.h"

#include <cmath>

namespace halvane::views {

QList<QPointF> spectrumCurve(const QList<float>& bands, double width, double height, int steps) {
    QList<QPointF> points;
    const auto count = bands.size();
    if (count < 2 || width <= 0 || height <= 0)
        return points;
    points.reserve((count - 2) * steps + 2);
    const auto at = [&](qsizetype i) {
        return QPointF(width * static_cast<double>(i) / static_cast<double>(count - 1),
                       height * (1 - static_cast<double>(bands[i])));
    };
    points.append(at(0));
    for (qsizetype i = 1; i + 1 < count; ++i) {
        const QPointF from = i == 1 ? at(0) : (at(i - 1) + at(i)) / 2;
        const QPointF to = i + 2 == count ? at(count - 1) : (at(i) + at(i + 1)) / 2;
        for (int s = 1; s <= steps; ++s) {
            const double t = static_cast<double>(s) / steps;
            points.append(from * (1 - t) * (1 - t) + at(i) * 2 * t * (1 - t) + to * t * t);
        }
    }
    if (count == 2)
        points.append(at(1));
    return points;
}

double bandLevelAt(const QList<float>& bands, double position) {
    const auto count = bands.size();
    if (count == 0)
        return 0;
    const double whole = std::floor(position);
    const double fraction = position - whole;
    const auto lower = static_cast<qsizetype>(whole) % count;
    const auto upper = (lower + 1) % count;
    return static_cast<double>(bands[lower]) * (1 - fraction) +
           static_cast<double>(bands[upper]) * fraction;
}

QList<double> ringLevels(const QList<float>& bands, int count) {
    QList<double> levels;
    levels.reserve(count);
    for (int i = 0; i < count; ++i)
        levels.append(
            bandLevelAt(bands, static_cast<double>(i) / count * static_cast<double>(bands.size())));
    return levels;
}

} // namespace halvane::views
