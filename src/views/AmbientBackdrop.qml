// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Shapes
import Halvane

// The window's background with the colour of what is playing across it, from corner to corner.
Rectangle {
    id: root

    property color ambient: Library.ambientColor
    readonly property real boost: Library.ambientBackgroundBoost

    color: Theme.windowBackground
    Behavior on ambient {
        ColorAnimation { duration: Theme.ambientChange; easing.type: Easing.InOutQuad }
    }

    Shape {
        anchors.fill: parent
        ShapePath {
            strokeWidth: -1
            startX: 0
            startY: 0
            fillGradient: LinearGradient {
                x1: 0
                y1: 0
                x2: root.width
                y2: root.height
                GradientStop { position: 0; color: Theme.withAlpha(root.ambient, 0.16 + root.boost) }
                GradientStop { position: 0.5; color: Theme.withAlpha(root.ambient, 0) }
                GradientStop { position: 1; color: Theme.withAlpha(root.ambient, 0.09 + 0.6 * root.boost) }
            }
            PathLine { x: root.width; y: 0 }
            PathLine { x: root.width; y: root.height }
            PathLine { x: 0; y: root.height }
        }
    }
}
