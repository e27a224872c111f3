// SPDX-License-Identifier: MIT
import QtQuick
import Halvane

// The window's background with the colour of what is playing across it, from corner to corner.
Item {
    id: root

    property color ambient: Library.ambient.ambientColor
    readonly property real boost: Library.appearance.ambientBackgroundBoost
    readonly property real diagonal: Math.hypot(root.width, root.height)
    readonly property list<color> colors: [
        Qt.tint(Theme.windowBackground, Theme.withAlpha(root.ambient, 0.16 + root.boost)),
        Theme.windowBackground,
        Qt.tint(Theme.windowBackground, Theme.withAlpha(root.ambient, 0.09 + 0.6 * root.boost))
    ]

    // Each step draws the whole window.
    Behavior on ambient {
        enabled: !Renderer.isSoftware
        ColorAnimation { duration: Theme.ambientChange; easing.type: Easing.InOutQuad }
    }

    // One opaque rectangle, turned to lie along the diagonal: drawn once, and nothing blended.
    Rectangle {
        anchors.centerIn: parent
        width: root.diagonal > 0 ? Math.ceil(2 * root.width * root.height / root.diagonal) + 2 : 0
        height: root.diagonal
        visible: !Renderer.isSoftware
        rotation: -Math.atan2(root.width, root.height) * 180 / Math.PI
        antialiasing: false
        gradient: Gradient {
            GradientStop { position: 0; color: root.colors[0] }
            GradientStop { position: 0.5; color: root.colors[1] }
            GradientStop { position: 1; color: root.colors[2] }
        }
    }
    BackdropPicture {
        anchors.fill: parent
        visible: Renderer.isSoftware
        colors: root.colors
    }
}
