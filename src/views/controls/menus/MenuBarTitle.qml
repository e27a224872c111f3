// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Templates as T
import Halvane

// A menu's title in the menu bar.
T.MenuBarItem {
    id: root

    implicitWidth: label.implicitWidth + 2 * Theme.rowInset
    implicitHeight: Theme.topRowHeight
    hoverEnabled: true
    Accessible.name: root.text

    contentItem: Text {
        id: label
        text: root.text
        font.pixelSize: 13
        color: root.highlighted || root.hovered ? Theme.primaryText : Theme.secondaryText
        horizontalAlignment: Text.AlignHCenter
        verticalAlignment: Text.AlignVCenter
    }
    background: Item {
        Rectangle {
            anchors.fill: parent
            anchors.topMargin: 5
            anchors.bottomMargin: anchors.topMargin
            radius: Theme.radiusSmall
            color: root.highlighted ? Theme.pressWash : root.hovered ? Theme.hoverWash : "transparent"
        }
    }
}
