// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>

class QWindow;

namespace halvane {

/// Finds out whether the desktop draws a frame around a window that asked for none, as some window
/// managers do; it is only known once the window is on the screen. Main thread.
class FrameWatch : public QObject {
    Q_OBJECT

  public:
    using QObject::QObject;
    /// Looks at a frameless window whenever it is shown.
    void follow(QWindow* window);
    [[nodiscard]] bool hasSystemFrame() const { return m_hasSystemFrame; }

    bool eventFilter(QObject* watched, QEvent* event) override;

  Q_SIGNALS:
    void changed();

  private:
    bool m_hasSystemFrame = false;
};

} // namespace halvane
