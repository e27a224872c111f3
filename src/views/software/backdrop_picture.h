// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>
#include <QList>
#include <QQuickPaintedItem>

namespace halvane::views {

/// A gradient from corner to corner, for the software renderer: painted when a colour or the size
/// changes, and kept, so that little is drawn below what moves. Main thread.
class BackdropPicture : public QQuickPaintedItem {
    Q_OBJECT
    QML_ELEMENT
    /// From the top left corner to the bottom right one, evenly spaced.
    Q_PROPERTY(QList<QColor> colors READ colors WRITE setColors NOTIFY colorsChanged REQUIRED)

  public:
    explicit BackdropPicture(QQuickItem* parent = nullptr);

    [[nodiscard]] QList<QColor> colors() const { return m_colors; }
    void setColors(const QList<QColor>& colors);
    void paint(QPainter* painter) override;

  Q_SIGNALS:
    void colorsChanged();

  private:
    QList<QColor> m_colors;
};

} // namespace halvane::views
