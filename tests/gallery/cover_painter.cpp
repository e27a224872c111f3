// SPDX-License-Identifier: MIT
#include "gallery/cover_painter.h"

#include <QPainter>
#include <QPainterPath>
#include <QRandomGenerator>

#include <array>
#include <cmath>

namespace halvane::test {

namespace {

void mountains(QPainter& p, const QColor& ink, const QColor& light) {
    p.setBrush(light);
    p.drawEllipse(QPointF(0.72, 0.28), 0.1, 0.1);
    p.setBrush(ink);
    p.drawPolygon(
        QPolygonF{{0, 0.95}, {0.34, 0.38}, {0.56, 0.74}, {0.74, 0.52}, {1, 0.92}, {1, 1}, {0, 1}});
}

void waves(QPainter& p, const QColor&, const QColor& light) {
    p.setBrush(Qt::NoBrush);
    p.setPen(QPen(light, 0.022));
    for (int line = 0; line < 6; ++line) {
        QPainterPath path;
        for (int step = 0; step <= 40; ++step) {
            const double x = step / 40.0;
            const QPointF at(x, 0.2 + 0.14 * line +
                                    0.025 * (1 + line % 3) * std::sin(x * 9 + line * 1.7));
            step == 0 ? path.moveTo(at) : path.lineTo(at);
        }
        p.drawPath(path);
    }
}

void bars(QPainter& p, const QColor&, const QColor& light, QRandomGenerator& random) {
    p.setBrush(light);
    for (int bar = 0; bar < 7; ++bar) {
        const double top = 0.15 + 0.35 * random.generateDouble();
        p.drawRoundedRect(
            QRectF(0.08 + 0.12 * bar, top, 0.07, 0.25 + 0.4 * random.generateDouble()), 0.035,
            0.035);
    }
}

void rings(QPainter& p, const QColor&, const QColor& light) {
    p.setBrush(Qt::NoBrush);
    for (int ring = 1; ring <= 6; ++ring) {
        QColor color = light;
        color.setAlphaF(1.05f - 0.13f * static_cast<float>(ring));
        p.setPen(QPen(color, 0.016));
        p.drawEllipse(QPointF(0.5, 0.5), 0.072 * ring, 0.072 * ring);
    }
}

void hill(QPainter& p, const QColor& ink, const QColor& light) {
    p.setBrush(light);
    p.drawEllipse(QPointF(0.5, 0.62), 0.3, 0.3);
    p.setBrush(ink);
    p.drawRect(QRectF(0, 0.7, 1, 0.3));
}

} // namespace

QImage paintCover(int seed, int side) {
    QRandomGenerator random(static_cast<quint32>(seed) * 2654435761u + 17u);
    QImage image(side, side, QImage::Format_RGB32);
    QPainter p(&image);
    p.setRenderHint(QPainter::Antialiasing);
    p.scale(side, side);
    p.setPen(Qt::NoPen);
    static constexpr std::array hues{0.145, 0.33, 0.58, 0.065, 0.46, 0.03, 0.78, 0.2, 0.53, 0.9};
    const double hue = seed < static_cast<int>(hues.size()) ? hues[static_cast<size_t>(seed)]
                                                            : random.generateDouble();
    QLinearGradient ground(0, 0, 1, 1);
    ground.setColorAt(0, QColor::fromHsvF(static_cast<float>(hue), 0.62f, 0.82f));
    ground.setColorAt(1,
                      QColor::fromHsvF(static_cast<float>(std::fmod(hue + 0.1, 1.0)), 0.74f, 0.5f));
    p.fillRect(QRectF(0, 0, 1, 1), ground);
    const QColor light =
        QColor::fromHsvF(static_cast<float>(std::fmod(hue + 0.5, 1.0)), 0.36f, 0.9f);
    QColor ink(20, 22, 26);
    ink.setAlphaF(0.62f);
    switch (seed % 5) {
    case 0:
        mountains(p, ink, light);
        break;
    case 1:
        waves(p, ink, light);
        break;
    case 2:
        bars(p, ink, light, random);
        break;
    case 3:
        rings(p, ink, light);
        break;
    default:
        hill(p, ink, light);
        break;
    }
    return image;
}

} // namespace halvane::test
