// SPDX-License-Identifier: MIT
import QtQuick
import Halvane

// The accent ring around what has the keyboard.
Rectangle {
    required property bool shown
    property real around: 3
    property real corner: Theme.radiusSmall

    anchors.fill: parent
    anchors.margins: -around
    visible: shown
    radius: corner + around
    color: "transparent"
    border.width: 2
    border.color: Theme.accent
    z: 10
}
