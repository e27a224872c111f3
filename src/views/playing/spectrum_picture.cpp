// SPDX-License-Identifier: MIT
#include "views/playing/spectrum_picture.h"

#include <QLinearGradient>
#include <QQuickWindow>
#include <QSGImageNode>

namespace halvane::views {

namespace {

QColor colorOf(const SpectrumCanvas::Paint& paint) {
    QColor color = paint.color;
    color.setAlphaF(static_cast<float>(paint.opacity) * color.alphaF());
    return color;
}

} // namespace

SpectrumPicture::SpectrumPicture(const QSizeF& size, double devicePixelRatio)
    : m_size(size)
    , m_image((size * devicePixelRatio).toSize(), QImage::Format_ARGB32_Premultiplied) {
    if (m_image.isNull())
        return;
    m_image.fill(Qt::transparent);
    m_painter.begin(&m_image);
    m_painter.setRenderHint(QPainter::Antialiasing);
    m_painter.scale(m_image.width() / size.width(), m_image.height() / size.height());
}

void SpectrumPicture::area(const QList<QPointF>& top, double floor, const Paint& atTop,
                           const Paint& atFloor) {
    if (!m_painter.isActive() || top.isEmpty())
        return;
    QPolygonF outline(top);
    outline << QPointF(top.last().x(), floor) << QPointF(top.first().x(), floor);
    QLinearGradient gradient(0, 0, 0, floor);
    gradient.setColorAt(0, colorOf(atTop));
    gradient.setColorAt(1, colorOf(atFloor));
    m_painter.setPen(Qt::NoPen);
    m_painter.setBrush(gradient);
    m_painter.drawPolygon(outline);
}

void SpectrumPicture::line(const QList<QPointF>& points, double width, const Paint& paint) {
    if (!m_painter.isActive())
        return;
    m_painter.setPen(QPen(colorOf(paint), width, Qt::SolidLine, Qt::FlatCap, Qt::RoundJoin));
    m_painter.drawPolyline(QPolygonF(points));
}

QSGNode* SpectrumPicture::into(QSGNode* old, QQuickWindow& window) {
    m_painter.end();
    auto* node = static_cast<QSGImageNode*>(old);
    if (m_image.isNull()) {
        delete node;
        return nullptr;
    }
    if (!node) {
        node = window.createImageNode();
        node->setOwnsTexture(true);
    }
    node->setTexture(window.createTextureFromImage(m_image));
    node->setRect(QRectF(QPointF(), m_size));
    return node;
}

} // namespace halvane::views
