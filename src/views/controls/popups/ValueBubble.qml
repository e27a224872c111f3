// SPDX-License-Identifier: MIT
import QtQuick
import Halvane

// A value over the place on a line that it belongs to, while that is pointed at. Low, so that it finds
// room between the line and what stands above that.
Rectangle {
    id: root

    required property string text

    width: Math.max(40, Math.ceil(label.implicitWidth) + 2 * Theme.gapSmall)
    height: 16
    radius: Theme.gapTiny
    color: Theme.panelRaised
    border.color: Theme.line

    Text {
        id: label
        anchors.centerIn: parent
        text: root.text
        textFormat: Text.PlainText
        font: Theme.caption
        color: Theme.primaryText
        Accessible.ignored: true
    }
}
