// SPDX-License-Identifier: MIT
// The geometry of the spectrum displays. Pure functions, any thread; lengths are in the caller's
// unit, y points down.
#pragma once

#include <QList>
#include <QPointF>
#include <QVector2D>

namespace halvane::views {

/// A smooth line through the band heights (0...1 of the height, first band at the left), as points
/// from the left edge to the right: quadratic segments that meet at the midpoints between bands,
/// each cut into `steps` straight pieces.
QList<QPointF> spectrumCurve(const QList<float>& bands, double width, double height, int steps);

/// The level at a fractional position in the bands, between its two neighbours; the last band is
/// followed by the first, so that a ring closes. 0 without bands.
double bandLevelAt(const QList<float>& bands, double position);

/// The levels of `count` bars spaced evenly over the bands.
QList<double> ringLevels(const QList<float>& bands, int count);

} // namespace halvane::views
