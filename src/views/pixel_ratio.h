// SPDX-License-Identifier: MIT
#pragma once

#include <QQuickItem>
#include <QQuickWindow>

namespace halvane::views {

/// Device pixels to a logical pixel in the window that shows this item. An item of its own because
/// a window's ratio can differ from its screen's. Draws nothing. Main thread.
class PixelRatio : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(qreal value READ value NOTIFY valueChanged)

  public:
    using QQuickItem::QQuickItem;

    qreal value() const { return window() ? window()->effectiveDevicePixelRatio() : 1; }

  Q_SIGNALS:
    void valueChanged();

  protected:
    void itemChange(ItemChange change, const ItemChangeData& data) override {
        QQuickItem::itemChange(change, data);
        if (change == ItemDevicePixelRatioHasChanged || change == ItemSceneChange)
            Q_EMIT valueChanged();
    }
};

} // namespace halvane::views
