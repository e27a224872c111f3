// SPDX-License-Identifier: MIT
// Colours taken from cover art. Pure functions. Any thread, but ambientColor decodes a picture and
// must not run on the main one.
#pragma once

#include "model/artwork.h"
#include "model/color.h"
#include "model/file_url.h"

#include <QImage>

#include <optional>

namespace halvane::ArtworkColor {

/// The mean of 64 pixels on an 8 by 8 grid over the image; none for an image without pixels.
std::optional<Color> averageColor(const QImage& image);

/// A background tint of the artwork's hue, or of the cover file's where there is no artwork. None
/// when there is neither, or when it does not decode: the file does not stand in for artwork that
/// does not decode.
std::optional<Color> ambientColor(const std::optional<Artwork>& artworkData,
                                  const std::optional<FileUrl>& coverURL);

/// A brighter, more saturated colour of the same hue, for lines and text on dark ground. A colour
/// that is not made of finite numbers comes back as it is.
Color vivid(const Color& color);

} // namespace halvane::ArtworkColor
