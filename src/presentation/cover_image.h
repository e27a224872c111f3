// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QImage>
#include <QSize>

namespace halvane {

/// Decodes a picture: the first frame of an animated one, turned as its orientation tag says. With
/// a size in pixels it is scaled down, keeping its shape, to cover that size; it is never scaled
/// up. A null image for what is no picture, is broken, or is too large to be a cover (over 50
/// megapixels by its header, or over 128 MB in memory). Large pictures are decoded one at a time.
/// Any thread, but slow: never the main one.
QImage decodeCover(const QByteArray& bytes, QSize covering = {});

/// The name of the format, such as "jpeg", by the picture's header; empty where decodeCover would
/// not begin to decode it. Any thread.
QByteArray coverFormat(const QByteArray& bytes);

} // namespace halvane
