// SPDX-License-Identifier: MIT
#include "views/playing/spectrum_items.h"

#include "views/playing/spectrum_shapes.h"

#include <QQuickWindow>
#include <QSGGeometryNode>
#include <QSGVertexColorMaterial>

#include <cmath>
#include <numbers>

namespace halvane::views {

namespace {

constexpr int curveSteps = 5;
constexpr double fillTopOpacity = 0.62;
constexpr double fillBottomOpacity = 0.08;
constexpr double outlineOpacity = 0.95;
constexpr double outlineWidth = 1.25;
constexpr int barCount = 96;
constexpr double barWidth = 0.021; // of the circle's radius
constexpr double thinnestBar = 2;
constexpr double restingBar = 0.16; // of the reach: a silent ring is still a ring
constexpr double circleOpacity = 0.05;
constexpr int circlePieces = 192;

// Collects triangles for one strip-less draw. Colours are premultiplied, as the scene graph wants.
class Triangles {
  public:
    struct Paint {
        QColor color;
        double opacity;
    };

    void add(const QPointF& at, const Paint& paint) {
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
    void quad(const QPointF& a, const Paint& pa, const QPointF& b, const Paint& pb,
              const QPointF& c, const Paint& pc, const QPointF& d, const Paint& pd) {
        add(a, pa), add(b, pb), add(c, pc);
        add(c, pc), add(b, pb), add(d, pd);
    }
    // A line whose edges fade over half a pixel, so that it is smooth without multisampling.
    void line(const QPointF& from, const QPointF& to, double width, const Paint& paint,
              double pixel) {
        const QPointF along = to - from;
        const double length = std::hypot(along.x(), along.y());
        if (length <= 0)
            return;
        const QPointF normal(-along.y() / length, along.x() / length);
        const QPointF core = normal * std::max(width / 2 - pixel / 2, 0.0);
        const QPointF edge = normal * (width / 2 + pixel / 2);
        const Paint clear{paint.color, 0};
        quad(from - edge, clear, to - edge, clear, from - core, paint, to - core, paint);
        quad(from - core, paint, to - core, paint, from + core, paint, to + core, paint);
        quad(from + core, paint, to + core, paint, from + edge, clear, to + edge, clear);
    }

    [[nodiscard]] QSGNode* into(QSGNode* old) const {
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

  private:
    QList<QSGGeometry::ColoredPoint2D> m_points;
};

double pixelOf(const QQuickItem& item) {
    return 1 / item.window()->effectiveDevicePixelRatio();
}

} // namespace

SpectrumItem::SpectrumItem(QQuickItem* parent)
    : QQuickItem(parent) {
    setFlag(ItemHasContents);
}

void SpectrumItem::setBands(const QList<float>& bands) {
    if (m_bands == bands)
        return;
    m_bands = bands;
    Q_EMIT bandsChanged();
    // An update of what nobody sees would draw the whole window again.
    if (isVisible())
        update();
}

void SpectrumItem::itemChange(ItemChange change, const ItemChangeData& data) {
    if (change == ItemVisibleHasChanged && isVisible())
        update();
    QQuickItem::itemChange(change, data);
}

void SpectrumItem::setTint(const QColor& tint) {
    if (m_tint == tint)
        return;
    m_tint = tint;
    Q_EMIT tintChanged();
    update();
}

QSGNode* SpectrumCurveItem::updatePaintNode(QSGNode* old, UpdatePaintNodeData*) {
    const QList<QPointF> curve =
        spectrumCurve(bands(), width(), height() - outlineWidth, curveSteps);
    Triangles triangles;
    const QPointF offset(0, outlineWidth / 2);
    const double floor = height();
    const auto paintAt = [&](double y) {
        const double down = floor > 0 ? y / floor : 0;
        return Triangles::Paint{tint(),
                                fillTopOpacity + (fillBottomOpacity - fillTopOpacity) * down};
    };
    for (qsizetype i = 1; i < curve.size(); ++i) {
        const QPointF left = curve[i - 1] + offset;
        const QPointF right = curve[i] + offset;
        triangles.quad(left, paintAt(left.y()), right, paintAt(right.y()), {left.x(), floor},
                       paintAt(floor), {right.x(), floor}, paintAt(floor));
    }
    const Triangles::Paint outline{tint(), outlineOpacity};
    for (qsizetype i = 1; i < curve.size(); ++i)
        triangles.line(curve[i - 1] + offset, curve[i] + offset, outlineWidth, outline,
                       pixelOf(*this));
    return triangles.into(old);
}

void SpectrumBarsItem::setInnerRadius(qreal radius) {
    if (m_innerRadius == radius)
        return;
    m_innerRadius = radius;
    Q_EMIT geometryAsked();
    update();
}

void SpectrumBarsItem::setReach(qreal reach) {
    if (m_reach == reach)
        return;
    m_reach = reach;
    Q_EMIT geometryAsked();
    update();
}

QSGNode* SpectrumBarsItem::updatePaintNode(QSGNode* old, UpdatePaintNodeData*) {
    const QPointF centre(width() / 2, height() / 2);
    const double pixel = pixelOf(*this);
    // Clockwise from the top.
    const auto at = [&](double turn, double radius) {
        const double angle = (turn - 0.25) * 2 * std::numbers::pi;
        return centre + QPointF(std::cos(angle), std::sin(angle)) * radius;
    };
    Triangles triangles;
    const Triangles::Paint circle{Qt::white, circleOpacity};
    for (int i = 0; i < circlePieces; ++i)
        triangles.line(at(static_cast<double>(i) / circlePieces, m_innerRadius),
                       at(static_cast<double>(i + 1) / circlePieces, m_innerRadius), 1, circle,
                       pixel);
    const double thickness = std::max(thinnestBar, barWidth * m_innerRadius);
    const QList<double> levels = ringLevels(bands(), barCount);
    for (int i = 0; i < barCount; ++i) {
        const double length = m_reach * (restingBar + (1 - restingBar) * levels[i]);
        const Triangles::Paint paint{tint(), 0.45 + 0.55 * levels[i]};
        const double turn = static_cast<double>(i) / barCount;
        triangles.line(at(turn, m_innerRadius), at(turn, m_innerRadius + length), thickness, paint,
                       pixel);
    }
    return triangles.into(old);
}

} // namespace halvane::views
