// SPDX-License-Identifier: MIT
#pragma once

#include "views/playing/spectrum_canvas.h"

#include <QSGGeometry>

class QSGNode;

namespace halvane::views {

/// Collects triangles for one draw call of a graphics card.
class SpectrumTriangles : public SpectrumCanvas {
  public:
    /// A pixel is this much of the item's unit.
    explicit SpectrumTriangles(double pixel)
        : m_pixel(pixel) {}

    void area(const QList<QPointF>& top, double floor, const Paint& atTop,
              const Paint& atFloor) override;
    void line(const QList<QPointF>& points, double width, const Paint& paint) override;
    /// The node that shows them; the one that showed them before, if any. The caller owns it.
    [[nodiscard]] QSGNode* into(QSGNode* old) const;

  private:
    void add(const QPointF& at, const Paint& paint);
    void quad(const QPointF& a, const Paint& pa, const QPointF& b, const Paint& pb,
              const QPointF& c, const Paint& pc, const QPointF& d, const Paint& pd);
    void piece(const QPointF& from, const QPointF& to, double width, const Paint& paint);

    double m_pixel;
    QList<QSGGeometry::ColoredPoint2D> m_points;
};

} // namespace halvane::views
