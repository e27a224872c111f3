// SPDX-License-Identifier: MIT
// Where windows go: pure rules over rectangles in device-independent pixels.
#pragma once

#include <QList>
#include <QPoint>
#include <QRect>
#include <QSize>

#include <optional>

namespace halvane {

/// A place moved so that the window lies within the area; where the window is larger than the
/// area, its left and top edges show.
QPoint clampedTo(const QRect& area, QPoint origin, QSize size);

/// The origin that centres a window on another one, kept within the screen's free area if known.
QPoint centredOn(const QRect& other, QSize size, const std::optional<QRect>& area);

/// The top right corner of an area, a little inside it.
QPoint topTrailing(const QRect& area, QSize size);

/// The origin of a panel that opens from an icon: centred below it in the upper half of the screen,
/// above it in the lower, within the area.
QPoint besideIcon(QPoint icon, QSize size, const QRect& area);

/// The free area in which most of a place lies; the first one when it lies in none. Empty without
/// any.
QRect areaAround(const QRect& place, const QList<QRect>& areas);

/// A place no larger than the area. It moves into the area where it had to shrink, so that nothing
/// of the window is out of reach.
QRect fittedInto(const QRect& area, const QRect& place);

/// A remembered place, if enough of the window's top row would show on one of the screens to take
/// hold of it.
std::optional<QRect> stillReachable(const QRect& remembered, const QList<QRect>& areas);

} // namespace halvane
