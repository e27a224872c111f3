// SPDX-License-Identifier: MIT
#pragma once

#include <QQuickPaintedItem>

namespace halvane::views {

/// A record seen from above, as vinyl.frag draws it, for the software renderer: painted once a
/// size. Main thread.
class RecordPicture : public QQuickPaintedItem {
    Q_OBJECT
    QML_ELEMENT
    /// Radius of the label, of the disc's.
    Q_PROPERTY(qreal label MEMBER m_label NOTIFY labelChanged REQUIRED)

  public:
    using QQuickPaintedItem::QQuickPaintedItem;

    void paint(QPainter* painter) override;

  Q_SIGNALS:
    void labelChanged();

  private:
    qreal m_label = 0;
};

} // namespace halvane::views
