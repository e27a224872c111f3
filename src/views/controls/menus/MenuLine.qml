// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Templates as T
import Halvane

// The line between two groups of a menu.
T.MenuSeparator {
    implicitWidth: 20
    implicitHeight: Theme.menuLineHeight
    contentItem: Item {
        Rectangle {
            width: parent.width
            height: 1
            anchors.verticalCenter: parent.verticalCenter
            color: Theme.hairline
        }
    }
}
