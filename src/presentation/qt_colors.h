// SPDX-License-Identifier: MIT
// The model's colours as the views take them. Any thread.
#pragma once

#include "model/color.h"

#include <QColor>
#include <QList>

#include <vector>

namespace halvane {

inline QColor qtColor(const Color& color) {
    return QColor::fromRgbF(static_cast<float>(color.red), static_cast<float>(color.green),
                            static_cast<float>(color.blue), static_cast<float>(color.opacity));
}

/// The inverse of qtColor.
inline Color colorOf(const QColor& color) {
    return {static_cast<double>(color.redF()), static_cast<double>(color.greenF()),
            static_cast<double>(color.blueF()), static_cast<double>(color.alphaF())};
}

inline QList<QColor> qtColors(const std::vector<Color>& colors) {
    QList<QColor> result;
    for (const Color& color : colors)
        result.append(qtColor(color));
    return result;
}

} // namespace halvane
