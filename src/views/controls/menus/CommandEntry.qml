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
    implicitHeight: root.command.isSeparator ? Theme.menuLineHeight : Theme.controlHeight
    isLine: root.command.isSeparator
    Accessible.ignored: root.isLine
    Accessible.role: root.isLine ? Accessible.Separator : Accessible.MenuItem // Qt 6.8 shows what is ignored here
    onTriggered: root.command.trigger()

    Rectangle {
        anchors.verticalCenter: parent.verticalCenter
        x: Theme.gapSmall
        width: parent.width - 2 * x
        height: 1
        visible: root.command.isSeparator
        color: Theme.line
    }
}
