// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Templates as T
import Halvane

// A thin scroll bar that shows itself while it is of use.
T.ScrollBar {
    id: root

    readonly property real thickness: 6

    implicitWidth: root.thickness + 2 * root.padding
    implicitHeight: implicitWidth
    padding: 2
    minimumSize: 0.04
    visible: root.size < 1
    focusPolicy: Qt.NoFocus
    Accessible.ignored: true

    contentItem: Rectangle {
        implicitWidth: root.thickness
        implicitHeight: root.thickness
        radius: root.thickness / 2
        color: root.pressed ? Theme.tertiaryText : Theme.line
        opacity: root.active || root.hovered ? 1 : 0.45
        Behavior on opacity {
            NumberAnimation { duration: Theme.quick }
        }
    }
}
