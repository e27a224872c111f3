// SPDX-License-Identifier: MIT
#include "views/playing/spectrum_items.h"

#include "views/playing/spectrum_picture.h"
#include "views/playing/spectrum_shapes.h"
#include "views/playing/spectrum_triangles.h"
#include "views/software/renderer.h"

#include <QQuickWindow>

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

QSGNode* SpectrumItem::updatePaintNode(QSGNode* old, UpdatePaintNodeData*) {
    const double ratio = window()->effectiveDevicePixelRatio();
    if (Renderer::isSoftware()) {
        SpectrumPicture picture(size(), ratio);
        draw(picture);
        return picture.into(old, *window());
    }
    SpectrumTriangles triangles(1 / ratio);
    draw(triangles);
    return triangles.into(old);
}

void SpectrumCurveItem::draw(SpectrumCanvas& canvas) const {
    QList<QPointF> curve = spectrumCurve(bands(), width(), height() - outlineWidth, curveSteps);
    for (QPointF& point : curve)
        point.ry() += outlineWidth / 2;
    canvas.area(curve, height(), {tint(), fillTopOpacity}, {tint(), fillBottomOpacity});
    canvas.line(curve, outlineWidth, {tint(), outlineOpacity});
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

void SpectrumBarsItem::draw(SpectrumCanvas& canvas) const {
    const QPointF centre(width() / 2, height() / 2);
    // Clockwise from the top.
    const auto at = [&](double turn, double radius) {
        const double angle = (turn - 0.25) * 2 * std::numbers::pi;
        return centre + QPointF(std::cos(angle), std::sin(angle)) * radius;
    };
    QList<QPointF> circle;
    for (int i = 0; i <= circlePieces; ++i)
        circle.append(at(static_cast<double>(i) / circlePieces, m_innerRadius));
    canvas.line(circle, 1, {Qt::white, circleOpacity});
    const double thickness = std::max(thinnestBar, barWidth * m_innerRadius);
    const QList<double> levels = ringLevels(bands(), barCount);
    for (int i = 0; i < barCount; ++i) {
        const double length = m_reach * (restingBar + (1 - restingBar) * levels[i]);
        const double turn = static_cast<double>(i) / barCount;
        canvas.line({at(turn, m_innerRadius), at(turn, m_innerRadius + length)}, thickness,
                    {tint(), 0.45 + 0.55 * levels[i]});
    }
}

} // namespace halvane::views
