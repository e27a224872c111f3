// SPDX-License-Identifier: MIT
import QtQuick
import Halvane

// A command in a menu. A separator command is a line.
MenuEntry {
    id: root

    required property Command command

    text: root.command.isSeparator ? "" : root.command.title
    detail: root.command.isSeparator ? "" : root.command.shortcutText
    enabled: !root.command.isSeparator && root.command.enabled
    implicitHeight: root.command.isSeparator ? 9 : 28
    Accessible.ignored: root.command.isSeparator
    onTriggered: root.command.trigger()

    Rectangle {
        anchors.verticalCenter: parent.verticalCenter
        x: 8
        width: parent.width - 16
        height: 1
        visible: root.command.isSeparator
        color: Theme.line
    }
}
