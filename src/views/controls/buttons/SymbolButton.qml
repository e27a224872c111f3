// SPDX-License-Identifier: MIT
import QtQuick
import Halvane

// A round button around one symbol.
PressableBase {
    id: root

    required property string symbol
    property real size: Theme.buttonSize
    property real symbolSize: 20
    property color symbolColor: Theme.secondaryText
    property color fill: "transparent"
    property color outline: "transparent"
    property real corner: size / 2

    implicitWidth: root.size
    implicitHeight: root.size
    opacity: root.enabled ? 1 : 0.4

    contentItem: SymbolLabel {
        symbol: root.symbol
        size: root.symbolSize
        color: root.hovered && Qt.colorEqual(root.symbolColor, Theme.secondaryText) ? Theme.primaryText : root.symbolColor
    }
    background: Rectangle {
        radius: root.corner
        color: root.fill
        border.width: root.outline.a > 0 ? 1 : 0
        border.color: root.outline

        Rectangle {
            anchors.fill: parent
            radius: root.corner
            color: root.pressed ? Theme.pressWash : Theme.hoverWash
            opacity: root.hovered || root.pressed ? 1 : 0
            Behavior on opacity {
                NumberAnimation { duration: Theme.quick; easing.type: Easing.OutQuad }
            }
        }
        FocusRing {
            shown: root.visualFocus
            corner: root.corner
        }
    }
}
