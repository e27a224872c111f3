// SPDX-License-Identifier: MIT
// Colours taken from cover art. Pure functions; any thread, but those that decode never the main
// one.
#pragma once

#include "model/artwork.h"
#include "model/color.h"
#include "model/file_url.h"

#include <QImage>

#include <optional>

namespace halvane::ArtworkColor {

/// The mean of 64 pixels on an 8 by 8 grid over the image; none for an image without pixels.
std::optional<Color> averageColor(const QImage& image);

/// A background tint of the artwork's hue; without artwork that of the file at the cover URL. None
/// when there is neither, or no picture in what there is: the URL is no second try for artwork that
/// does not decode.
std::optional<Color> ambientColor(const std::optional<Artwork>& artworkData,
                                  const std::optional<FileUrl>& coverURL);

/// A brighter, more saturated colour of the same hue, for lines and text on dark ground. A colour
/// that is not made of finite numbers comes back as it is.
Color vivid(const Color& color);

} // namespace halvane::ArtworkColor
