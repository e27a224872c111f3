// SPDX-License-Identifier: MIT
#include "views/playing/spectrum_triangles.h"

#include <QSGGeometryNode>
#include <QSGVertexColorMaterial>

#include <algorithm>
#include <cmath>

namespace halvane::views {

// Colours are premultiplied, as the scene graph wants.
void SpectrumTriangles::add(const QPointF& at, const Paint& paint) {
    const double alpha = paint.opacity * paint.color.alphaF();
    const auto part = [&](float c) {
        return static_cast<uchar>(std::lround(static_cast<double>(c) * alpha * 255));
    };
    QSGGeometry::ColoredPoint2D point;
    point.set(static_cast<float>(at.x()), static_cast<float>(at.y()), part(paint.color.redF()),
              part(paint.color.greenF()), part(paint.color.blueF()),
              static_cast<uchar>(std::lround(alpha * 255)));
    m_points.append(point);
}

void SpectrumTriangles::quad(const QPointF& a, const Paint& pa, const QPointF& b, const Paint& pb,
                             const QPointF& c, const Paint& pc, const QPointF& d, const Paint& pd) {
    add(a, pa), add(b, pb), add(c, pc);
    add(c, pc), add(b, pb), add(d, pd);
}

// Its edges fade over half a pixel, so that it is smooth without multisampling.
void SpectrumTriangles::piece(const QPointF& from, const QPointF& to, double width,
                              const Paint& paint) {
    const QPointF along = to - from;
    const double length = std::hypot(along.x(), along.y());
    if (length <= 0)
        return;
    const QPointF normal(-along.y() / length, along.x() / length);
    const QPointF core = normal * std::max(width / 2 - m_pixel / 2, 0.0);
    const QPointF edge = normal * (width / 2 + m_pixel / 2);
    const Paint clear{paint.color, 0};
    quad(from - edge, clear, to - edge, clear, from - core, paint, to - core, paint);
    quad(from - core, paint, to - core, paint, from + core, paint, to + core, paint);
    quad(from + core, paint, to + core, paint, from + edge, clear, to + edge, clear);
}

void SpectrumTriangles::area(const QList<QPointF>& top, double floor, const Paint& atTop,
                             const Paint& atFloor) {
    const auto paintAt = [&](double y) {
        const double down = floor > 0 ? y / floor : 0;
        return Paint{atTop.color, atTop.opacity + (atFloor.opacity - atTop.opacity) * down};
    };
    for (qsizetype i = 1; i < top.size(); ++i) {
        const QPointF& left = top[i - 1];
        const QPointF& right = top[i];
        quad(left, paintAt(left.y()), right, paintAt(right.y()), {left.x(), floor}, atFloor,
             {right.x(), floor}, atFloor);
    }
}

void SpectrumTriangles::line(const QList<QPointF>& points, double width, const Paint& paint) {
    for (qsizetype i = 1; i < points.size(); ++i)
        piece(points[i - 1], points[i], width, paint);
}

QSGNode* SpectrumTriangles::into(QSGNode* old) const {
    auto* node = static_cast<QSGGeometryNode*>(old);
    if (!node) {
        node = new QSGGeometryNode;
        auto* geometry = new QSGGeometry(QSGGeometry::defaultAttributes_ColoredPoint2D(), 0);
        geometry->setDrawingMode(QSGGeometry::DrawTriangles);
        node->setGeometry(geometry);
        node->setFlag(QSGNode::OwnsGeometry);
        node->setMaterial(new QSGVertexColorMaterial);
        node->setFlag(QSGNode::OwnsMaterial);
    }
    QSGGeometry* geometry = node->geometry();
    if (geometry->vertexCount() != m_points.size())
        geometry->allocate(static_cast<int>(m_points.size()));
    std::copy(m_points.begin(), m_points.end(), geometry->vertexDataAsColoredPoint2D());
    node->markDirty(QSGNode::DirtyGeometry);
    return node;
}

} // namespace halvane::views
