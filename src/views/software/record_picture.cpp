// SPDX-License-Identifier: MIT
#include "views/software/record_picture.h"

#include <QConicalGradient>
#include <QImage>
#include <QPainter>
#include <QRadialGradient>

#include <algorithm>
#include <cmath>
#include <functional>
#include <numbers>

namespace halvane::views {

namespace {

constexpr double pi = std::numbers::pi;
constexpr double groovesPerRadius = 46;
constexpr int samples = 500; // of a gradient, which is drawn from about a thousand colours

double between(double from, double to, double x) {
    const double t = std::clamp((x - from) / (to - from), 0.0, 1.0);
    return t * t * (3 - 2 * t);
}

double band(double x, double at, double width) {
    return std::exp(-(x - at) * (x - at) / (width * width));
}

double groove(double r) {
    return 0.5 + 0.5 * std::cos(r * groovesPerRadius * 2 * pi);
}

// How light the disc is at a part of its radius, of `pixels` pixels: the fine grooves fade where
// they would alias, the gaps between the tracks stay.
double shadeAt(double r, double label, double pixels) {
    const double grooved = between(label + 0.05, label + 0.08, r) * (1 - between(0.955, 0.975, r));
    const double visible = std::clamp(pixels / groovesPerRadius / 3, 0.0, 1.0);
    double shade = 0.028 + 0.012 * (1 - r);
    shade += 0.022 * std::pow(groove(r), 4) * grooved * visible;
    for (const double gap : {0.27, 0.51, 0.75})
        shade -= 0.016 * band(r, label + (0.97 - label) * gap, 0.006) * grooved;
    return shade + 0.07 * band(r, 0.992, 0.006); // the bevel of the edge
}

// Two soft wedges of light, opposite each other; clockwise from the right.
double lightAt(double angle) {
    return 0.105 * std::pow(0.5 + 0.5 * std::cos(2 * (angle + 0.36 * pi)), 28) +
           0.03 * std::pow(0.5 + 0.5 * std::cos(2 * (angle - 0.10 * pi)), 60);
}

template<typename Gradient>
Gradient sampled(Gradient gradient, const std::function<QColor(double)>& colorAt) {
    QGradientStops stops;
    for (int i = 0; i <= samples; ++i) {
        const double place = static_cast<double>(i) / samples;
        stops.append({place, colorAt(place)});
    }
    gradient.setStops(stops);
    return gradient;
}

QColor grey(double shade, double opacity) {
    const auto part = [](double value) { return static_cast<float>(std::clamp(value, 0.0, 1.0)); };
    return QColor::fromRgbF(part(shade), part(shade), part(shade * 1.04), part(opacity));
}

} // namespace

void RecordPicture::paint(QPainter* painter) {
    const double radius = width() / 2;
    const QPointF centre(radius, radius);
    const double pixels = radius * painter->deviceTransform().m11();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setPen(Qt::NoPen);
    painter->setBrush(sampled(QRadialGradient(centre, radius),
                              [&](double r) { return grey(shadeAt(r, m_label, pixels), 1); }));
    painter->drawEllipse(boundingRect());

    // The light, as strong as the surface below throws it back.
    QImage light(QSizeF(2 * pixels, 2 * pixels).toSize(), QImage::Format_ARGB32_Premultiplied);
    if (light.isNull())
        return;
    light.fill(Qt::transparent);
    QPainter inLight(&light);
    inLight.setRenderHint(QPainter::Antialiasing);
    inLight.scale(pixels / radius, pixels / radius);
    inLight.setPen(Qt::NoPen);
    // A gradient's turn is anticlockwise.
    inLight.setBrush(sampled(QConicalGradient(centre, 0),
                             [](double turn) { return grey(1, lightAt(-turn * 2 * pi)); }));
    inLight.drawEllipse(boundingRect());
    inLight.setCompositionMode(QPainter::CompositionMode_DestinationIn);
    inLight.fillRect(boundingRect(), sampled(QRadialGradient(centre, radius), [&](double r) {
                         return grey(1, between(m_label, 0.6, r) * (0.82 + 0.18 * groove(r)));
                     }));
    inLight.end();
    painter->setCompositionMode(QPainter::CompositionMode_Plus);
    painter->drawImage(boundingRect(), light);
}

} // namespace halvane::views
