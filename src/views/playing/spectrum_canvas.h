// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>
#include <QList>
#include <QPointF>

namespace halvane::views {

/// What the spectrum displays draw on, in the item's coordinates. What is drawn later lies above.
/// The scene graph's thread.
class SpectrumCanvas {
  public:
    struct Paint {
        QColor color;
        double opacity;
    };

    virtual ~SpectrumCanvas() = default;
    /// Fills what lies between a line from left to right and the floor, from the first opacity at
    /// y = 0 to the second one at the floor.
    virtual void area(const QList<QPointF>& top, double floor, const Paint& atTop,
                      const Paint& atFloor) = 0;
    /// A smooth line through the points.
    virtual void line(const QList<QPointF>& points, double width, const Paint& paint) = 0;
};

} // namespace halvane::views
