// SPDX-License-Identifier: MIT
#include "presentation/artwork_color.h"

#include "presentation/cover_image.h"

#include <algorithm>
#include <cmath>

namespace halvane::ArtworkColor {

namespace {

constexpr int grid = 8;
// Larger pictures are scaled down while they are decoded: 64 samples need no more.
constexpr QSize enough{2048, 2048};

QImage decoded(const std::optional<Artwork>& artworkData, const std::optional<FileUrl>& coverURL) {
    if (artworkData)
        return decodeCover(artworkData->read(), enough);
    if (coverURL)
        return decodeCover(Artwork::fromFile(coverURL->path()).read(), enough);
    return {};
}

} // namespace

std::optional<Color> averageColor(const QImage& image) {
    const int width = image.width();
    const int height = image.height();
    if (width < 1 || height < 1)
        return std::nullopt;
    int red = 0;
    int green = 0;
    int blue = 0;
    for (int j = 0; j < grid; ++j) {
        for (int i = 0; i < grid; ++i) {
            // In 64 bits: eight times the width of a large picture does not fit an int.
            const int x = static_cast<int>(width / 16 + static_cast<qint64>(i) * width / grid);
            const int y = static_cast<int>(height / 16 + static_cast<qint64>(j) * height / grid);
            const QRgb pixel = image.pixel(x, y);
            red += qRed(pixel);
            green += qGreen(pixel);
            blue += qBlue(pixel);
        }
    }
    constexpr double brightest = 255 * grid * grid;
    return Color{red / brightest, green / brightest, blue / brightest};
}

std::optional<Color> ambientColor(const std::optional<Artwork>& artworkData,
                                  const std::optional<FileUrl>& coverURL) {
    const auto average = averageColor(decoded(artworkData, coverURL));
    if (!average)
        return std::nullopt;
    const Hsb hsb = hsbOf(*average);
    return colorFromHsb(
        {hsb.hue, std::clamp(hsb.saturation, 0.40, 0.85), std::clamp(hsb.brightness, 0.45, 0.78)});
}

Color vivid(const Color& color) {
    if (!std::isfinite(color.red) || !std::isfinite(color.green) || !std::isfinite(color.blue))
        return color;
    const Hsb hsb = hsbOf(color);
    return colorFromHsb(
        {hsb.hue, std::clamp(hsb.saturation, 0.62, 0.90), std::max(hsb.brightness, 0.86)});
}

} // namespace halvane::ArtworkColor
