// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QPointF>
#include <QSize>

class QWindow;

namespace halvane {

/// The edges of a window that a point takes hold of; none inside it.
Qt::Edges edgesAt(QPointF point, QSize window);

/// Lets the edges of a frameless window resize it. Lives as long as the window. Main thread.
class EdgeResizer : public QObject {
    Q_OBJECT

  public:
    explicit EdgeResizer(QWindow* window);
    ~EdgeResizer() override;

    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void showCursorFor(Qt::Edges edges);

    QWindow* m_window;
    Qt::Edges m_edges; ///< those under the pointer
};

} // namespace halvane
