// SPDX-License-Identifier: MIT
#include "app/windows/edge_resizer.h"

#include <QGuiApplication>
#include <QMouseEvent>
#include <QWindow>

namespace halvane {

namespace {

constexpr int thickness = 6;
constexpr int corner = 14; // a square of the thickness would be hard to catch

Qt::CursorShape cursorFor(Qt::Edges edges) {
    if (edges == (Qt::TopEdge | Qt::LeftEdge) || edges == (Qt::BottomEdge | Qt::RightEdge))
        return Qt::SizeFDiagCursor;
    if (edges == (Qt::TopEdge | Qt::RightEdge) || edges == (Qt::BottomEdge | Qt::LeftEdge))
        return Qt::SizeBDiagCursor;
    return edges & (Qt::LeftEdge | Qt::RightEdge) ? Qt::SizeHorCursor : Qt::SizeVerCursor;
}

} // namespace

Qt::Edges edgesAt(QPointF point, QSize window) {
    const double fromRight = window.width() - point.x();
    const double fromBottom = window.height() - point.y();
    const bool atEdge = point.x() < thickness || point.y() < thickness || fromRight <= thickness ||
                        fromBottom <= thickness;
    if (!atEdge)
        return {};
    Qt::Edges edges;
    if (point.x() < corner)
        edges |= Qt::LeftEdge;
    else if (fromRight <= corner)
        edges |= Qt::RightEdge;
    if (point.y() < corner)
        edges |= Qt::TopEdge;
    else if (fromBottom <= corner)
        edges |= Qt::BottomEdge;
    return edges;
}

EdgeResizer::EdgeResizer(QWindow* window)
    : QObject(window)
    , m_window(window) {
    window->installEventFilter(this);
}

EdgeResizer::~EdgeResizer() {
    showCursorFor({});
}

bool EdgeResizer::eventFilter(QObject*, QEvent* event) {
    switch (event->type()) {
    case QEvent::MouseMove: {
        const auto* mouse = static_cast<QMouseEvent*>(event);
        const bool free = m_window->windowState() == Qt::WindowNoState && !mouse->buttons();
        showCursorFor(free ? edgesAt(mouse->position(), m_window->size()) : Qt::Edges());
        return false;
    }
    case QEvent::Leave:
        showCursorFor({});
        return false;
    case QEvent::MouseButtonPress:
        if (!m_edges || static_cast<QMouseEvent*>(event)->button() != Qt::LeftButton)
            return false;
        return m_window->startSystemResize(m_edges);
    default:
        return false;
    }
}

void EdgeResizer::showCursorFor(Qt::Edges edges) {
    if (edges == m_edges)
        return;
    if (m_edges)
        QGuiApplication::restoreOverrideCursor();
    m_edges = edges;
    if (m_edges)
        QGuiApplication::setOverrideCursor(cursorFor(m_edges));
}

} // namespace halvane
