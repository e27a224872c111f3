// SPDX-License-Identifier: MIT
#include "views/software/aurora_picture.h"

#include <QImage>
#include <QPainter>

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>
#include <vector>

namespace halvane::views {

namespace {

constexpr double wholeTurn = 2 * std::numbers::pi;
constexpr double cell = 32; // points: finer than anything in the light
constexpr double blurRadius = 90;
constexpr double sector = 0.2; // of the circle: the stops of the angular gradient lie so far apart

/// Red, green and blue, 0...1.
using Light = std::array<float, 3>;

// aurora.vert says what these are.
double ramp(double x, double sigma) {
    return std::max(x, 0.0) + sigma / 1.702 * std::log1p(std::exp(-1.702 * std::abs(x) / sigma));
}

double hat(double x, double centre, double sigma) {
    const double d = std::remainder(x - centre, 1);
    return (ramp(d + sector, sigma) - 2 * ramp(d, sigma) + ramp(d - sector, sigma)) / sector;
}

double halfHat(double x, double sigma) {
    const double d = x - std::floor(x + 0.4);
    const double step = 1 / (1 + std::exp(std::clamp(-1.702 * d / sigma, -60.0, 60.0)));
    return step - (ramp(d, sigma) - ramp(d - sector, sigma)) / sector;
}

double sectorsAt(const QPointF& fromCentre, double turn) {
    const double distance = std::hypot(fromCentre.x(), fromCentre.y());
    const double turned = (std::atan2(fromCentre.y(), fromCentre.x()) - turn) / wholeTurn;
    const double angle = turned - std::floor(turned);
    const double sigma = std::min(blurRadius / (wholeTurn * std::max(distance, 1.0)), 0.35);
    const double light =
        0.7 * halfHat(angle, sigma) + 0.42 * hat(angle, 0.4, sigma) + 0.58 * hat(angle, 0.8, sigma);
    constexpr double mean = sector * (0.5 * 0.7 + 0.42 + 0.58);
    const double out = std::clamp(distance / (1.6 * blurRadius), 0.0, 1.0);
    return mean + (light - mean) * out * out * (3 - 2 * out);
}

Light lightAt(const QPointF& place, const QSizeF& size, double turn, const QColor& tint) {
    const auto distanceFrom = [&](double x, double y) {
        return std::hypot(place.x() - size.width() * x, place.y() - size.height() * y);
    };
    const double sectors =
        0.9 * std::clamp(sectorsAt(place - QPointF(size.width(), size.height()) / 2, turn), 0., 1.);
    const double glow = 0.38 * (1 - std::clamp((distanceFrom(0.5, 0.32) - 40) / 520, 0.0, 1.0));
    const double edge = std::clamp((distanceFrom(0.5, 0.42) - 320) / 660, 0.0, 1.0);
    const double shade = edge < 0.5 ? 0.44 * edge : 0.22 + 0.3 * (2 * edge - 1);
    const auto strength = static_cast<float>((sectors + (1 - sectors) * glow) * (1 - shade));
    return {tint.redF() * strength, tint.greenF() * strength, tint.blueF() * strength};
}

// The light at the corners of the cells, and between them what lies between it.
class Grid {
  public:
    Grid(const QSizeF& size, double turn, const QColor& tint)
        : m_columns(static_cast<int>(std::ceil(size.width() / cell)) + 1) {
        const int rows = static_cast<int>(std::ceil(size.height() / cell)) + 1;
        for (int row = 0; row < rows; ++row)
            for (int column = 0; column < m_columns; ++column)
                m_lights.push_back(lightAt({column * cell, row * cell}, size, turn, tint));
    }

    /// The lights along a line across; `down` and `pixel` in cells.
    void fillLine(double down, double pixel, std::vector<Light>& line) const {
        const int row = std::min(static_cast<int>(down), rowCount() - 2);
        const auto lower = static_cast<float>(down - row);
        for (std::size_t x = 0; x < line.size(); ++x) {
            const double across = (static_cast<double>(x) + 0.5) * pixel;
            const int column = std::min(static_cast<int>(across), m_columns - 2);
            const auto right = static_cast<float>(across - column);
            for (std::size_t part = 0; part < 3; ++part) {
                const auto at = [&](int r, int c) { return m_lights[index(r, c)][part]; };
                const float above = std::lerp(at(row, column), at(row, column + 1), right);
                const float below = std::lerp(at(row + 1, column), at(row + 1, column + 1), right);
                line[x][part] = std::lerp(above, below, lower);
            }
        }
    }

  private:
    [[nodiscard]] int rowCount() const { return static_cast<int>(m_lights.size()) / m_columns; }
    [[nodiscard]] std::size_t index(int row, int column) const {
        return static_cast<std::size_t>(row) * static_cast<std::size_t>(m_columns) +
               static_cast<std::size_t>(column);
    }

    int m_columns;
    std::vector<Light> m_lights;
};

// As in aurora.frag: one step of noise keeps dark ramps from banding.
float noiseAt(int x, int y) {
    const float place = 0.06711056F * static_cast<float>(x) + 0.00583715F * static_cast<float>(y);
    const float spread = 52.9829189F * (place - std::floor(place));
    return spread - std::floor(spread);
}

} // namespace

AuroraPicture::AuroraPicture(QQuickItem* parent)
    : QQuickPaintedItem(parent) {
    setOpaquePainting(true);
}

void AuroraPicture::setTint(const QColor& tint) {
    if (m_tint == tint)
        return;
    m_tint = tint;
    Q_EMIT tintChanged();
    update();
}

void AuroraPicture::paint(QPainter* painter) {
    const double ratio = painter->deviceTransform().m11();
    QImage picture((size() * ratio).toSize(), QImage::Format_RGB32);
    if (picture.isNull())
        return;
    const Grid grid(size(), m_turn, m_tint);
    const double pixel = 1 / ratio / cell;
    std::vector<Light> line(static_cast<std::size_t>(picture.width()));
    for (int y = 0; y < picture.height(); ++y) {
        grid.fillLine((y + 0.5) * pixel, pixel, line);
        auto* out = reinterpret_cast<QRgb*>(picture.scanLine(y));
        for (int x = 0; x < picture.width(); ++x) {
            const Light& light = line[static_cast<std::size_t>(x)];
            const float noise = noiseAt(x, y);
            const auto part = [&](float value) {
                return std::min(255, static_cast<int>(value * 255 + noise));
            };
            out[x] = qRgb(part(light[0]), part(light[1]), part(light[2]));
        }
    }
    painter->drawImage(boundingRect(), picture);
}

} // namespace halvane::views
