// SPDX-License-Identifier: MIT
pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Shapes
import QtQuick.Window
import Halvane

// A faint frame and a light from above, as on the front of a device. Takes no input.
Item {
    id: root

    // The light never changes, so it is painted once. It comes with the second picture: it is
    // hardly seen, and the first would wait for its shader. The software renderer does without: it
    // would draw the light's place again for everything that moves.
    Deferred {
        id: later
        Shape {
            id: light

            readonly property real reach: 420

            x: Math.round(root.width / 2) - reach
            width: 2 * reach
            height: reach
            layer.enabled: true
            layer.smooth: true
            ShapePath {
                strokeWidth: -1
                startX: 0
                startY: 0
                fillGradient: RadialGradient {
                    centerX: light.reach
                    centerY: 0
                    focalX: centerX
                    focalY: centerY
                    centerRadius: light.reach
                    GradientStop { position: 0; color: Qt.rgba(1, 1, 1, 0.022) }
                    GradientStop { position: 1; color: Qt.rgba(1, 1, 1, 0) }
                }
                PathLine { x: light.width; y: 0 }
                PathLine { x: light.width; y: light.height }
                PathLine { x: 0; y: light.height }
            }
        }
    }
    Connections {
        enabled: !later.wanted && !Renderer.isSoftware
        target: root.Window.window
        function onFrameSwapped(): void { later.wanted = true }
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
