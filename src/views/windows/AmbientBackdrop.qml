// SPDX-License-Identifier: MIT
import QtQuick
import Halvane

// The window's background with the colour of what is playing across it, from corner to corner. One
// opaque rectangle, turned to lie along the diagonal: drawn once, and nothing blended.
Item {
    id: root

    property color ambient: Library.ambient.ambientColor
    readonly property real boost: Library.appearance.ambientBackgroundBoost
    readonly property real diagonal: Math.hypot(root.width, root.height)

    Behavior on ambient {
        ColorAnimation { duration: Theme.ambientChange; easing.type: Easing.InOutQuad }
    }

    Rectangle {
        anchors.centerIn: parent
        width: root.diagonal > 0 ? Math.ceil(2 * root.width * root.height / root.diagonal) + 2 : 0
        height: root.diagonal
        rotation: -Math.atan2(root.width, root.height) * 180 / Math.PI
        antialiasing: false
        gradient: Gradient {
            GradientStop { position: 0; color: Qt.tint(Theme.windowBackground, Theme.withAlpha(root.ambient, 0.16 + root.boost)) }
            GradientStop { position: 0.5; color: Theme.windowBackground }
            GradientStop { position: 1; color: Qt.tint(Theme.windowBackground, Theme.withAlpha(root.ambient, 0.09 + 0.6 * root.boost)) }
        }
    }
}
