// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QQuickWindow>
#include <QtQml/qqmlregistration.h>

namespace halvane::views {

/// What draws the windows of this run: the software renderer runs no shaders, and draws only what
/// has changed. Any thread.
class Renderer : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(bool isSoftware READ isSoftware CONSTANT)

  public:
    using QObject::QObject;

    [[nodiscard]] static bool isSoftware() {
        return QQuickWindow::sceneGraphBackend() == QLatin1String("software");
    }
};

} // namespace halvane::views
