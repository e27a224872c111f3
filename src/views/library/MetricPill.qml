// SPDX-License-Identifier: MIT
import QtQuick
import Halvane

// A caption over a value.
Rectangle {
    id: root

    required property string caption
    required property string value
    readonly property real inset: 13

    implicitWidth: Math.max(captionText.implicitWidth, valueText.implicitWidth) + 2 * root.inset
    implicitHeight: 43
    radius: Theme.radiusMedium
    color: Theme.hoverWash
    Accessible.role: Accessible.StaticText
    Accessible.name: root.caption + ": " + root.value

    Column {
        x: root.inset
        anchors.verticalCenter: parent.verticalCenter
        spacing: 1
        Text {
            id: captionText
            text: root.caption
            font: Theme.badge
            color: Theme.tertiaryText
            Accessible.ignored: true
        }
        Text {
            id: valueText
            text: root.value
            font: Theme.name
            color: Theme.primaryText
            Accessible.ignored: true
        }
    }
}
