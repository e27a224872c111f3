// SPDX-License-Identifier: MIT
#pragma once

#include "views/playing/spectrum_canvas.h"

#include <QImage>
#include <QPainter>

class QQuickWindow;
class QSGNode;

namespace halvane::views {

/// Paints a picture, for the software renderer, which shows no geometry of our own.
class SpectrumPicture : public SpectrumCanvas {
  public:
    /// Of the item's size and the window's pixels. Empty where the size is.
    SpectrumPicture(const QSizeF& size, double devicePixelRatio);

    void area(const QList<QPointF>& top, double floor, const Paint& atTop,
              const Paint& atFloor) override;
    void line(const QList<QPointF>& points, double width, const Paint& paint) override;
    /// The node that shows it; the one that showed it before, if any. None for an empty one. The
    /// caller owns it.
    [[nodiscard]] QSGNode* into(QSGNode* old, QQuickWindow& window);

  private:
    QSizeF m_size;
    QImage m_image;
    QPainter m_painter;
};

} // namespace halvane::views
