// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>
#include <QQuickPaintedItem>

namespace halvane::views {

/// The light behind the full-screen player, as aurora.vert and aurora.frag draw it, but standing
/// still: for the software renderer, which would draw the whole window for each turn. Painted when
/// the colour or the size changes. Main thread.
class AuroraPicture : public QQuickPaintedItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QColor tint READ tint WRITE setTint NOTIFY tintChanged REQUIRED)
    /// Of the light, in radians.
    Q_PROPERTY(qreal turn MEMBER m_turn NOTIFY turnChanged REQUIRED)

  public:
    explicit AuroraPicture(QQuickItem* parent = nullptr);

    [[nodiscard]] QColor tint() const { return m_tint; }
    void setTint(const QColor& tint);
    void paint(QPainter* painter) override;

  Q_SIGNALS:
    void tintChanged();
    void turnChanged();

  private:
    QColor m_tint;
    qreal m_turn = 0;
};

} // namespace halvane::views
