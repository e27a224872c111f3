// SPDX-License-Identifier: MIT
import QtQuick
import Halvane

// A number on a capsule.
Rectangle {
    id: root

    required property string text
    property color fill: Theme.badgeFill
    property color textColor: Theme.secondaryText
    readonly property real inset: 7

    implicitWidth: Math.max(number.implicitWidth + 2 * root.inset, height)
    implicitHeight: 17
    radius: height / 2
    color: root.fill
    visible: root.text.length > 0

    Text {
        id: number
        anchors.centerIn: parent
        text: root.text
        font: Theme.badge
        color: root.textColor
        Accessible.ignored: true
    }
}
