// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QSize>

class QScreen;
class QWindow;

namespace halvane {

/// Keeps a window's least size within the free area of its screen, and the window itself when the
/// area shrinks or its screen goes away. A child of the window. Main thread.
class ScreenBounds : public QObject {
    Q_OBJECT

  public:
    ScreenBounds(QWindow* window, QSize leastSize);

  private:
    void follow(QScreen* screen);
    void boundLeastSize();
    void shrink();

    QWindow* m_window;
    QSize m_leastSize;
    QScreen* m_screen = nullptr; ///< only compared: it may be gone
    QMetaObject::Connection m_areaChanged;
};

} // namespace halvane
