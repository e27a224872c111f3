// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Shapes

// A faint frame and a light from above, as on the front of a device. Takes no input.
Item {
    id: root

    Shape {
        anchors.fill: parent
        ShapePath {
            strokeWidth: -1
            startX: 0
            startY: 0
            fillGradient: RadialGradient {
                centerX: root.width / 2
                centerY: 0
                focalX: centerX
                focalY: centerY
                centerRadius: 420
                GradientStop { position: 0; color: Qt.rgba(1, 1, 1, 0.022) }
                GradientStop { position: 1; color: Qt.rgba(1, 1, 1, 0) }
            }
            PathLine { x: root.width; y: 0 }
            PathLine { x: root.width; y: root.height }
            PathLine { x: 0; y: root.height }
        }
    }
    Rectangle {
        width: parent.width
        height: 1
        gradient: Gradient {
            orientation: Gradient.Horizontal
            GradientStop { position: 0; color: Qt.rgba(1, 1, 1, 0.02) }
            GradientStop { position: 0.5; color: Qt.rgba(1, 1, 1, 0.1) }
            GradientStop { position: 1; color: Qt.rgba(1, 1, 1, 0.02) }
        }
    }
}
