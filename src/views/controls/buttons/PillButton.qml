// SPDX-License-Identifier: MIT
import QtQuick
import Halvane

// A button with words on it, and a symbol before them where one is given.
PressableBase {
    id: root

    property string symbol
    property color textColor: Theme.primaryText
    property color fill: Theme.panelRaised
    property bool isPrimary
    property bool isQuiet
    property color quietColor: Theme.secondaryText
    property real corner: Theme.radiusSmall
    readonly property real inset: root.isQuiet ? Theme.gapSmall : Theme.gap

    implicitWidth: words.implicitWidth + 2 * root.inset
    implicitHeight: Theme.controlHeight
    opacity: root.enabled ? 1 : 0.4

    contentItem: Item {
        Row {
            id: words
            anchors.centerIn: parent
            spacing: 6
            SymbolLabel {
                visible: root.symbol.length > 0
                symbol: root.symbol
                size: 18
                anchors.verticalCenter: parent.verticalCenter
                color: label.color
            }
            Text {
                id: label
                anchors.verticalCenter: parent.verticalCenter
                text: root.text
                font: Theme.labelStrong
                textFormat: Text.PlainText
                color: root.isPrimary ? Theme.onAccent : root.isQuiet && !root.hovered ? root.quietColor : root.textColor
                Accessible.ignored: true
            }
        }
    }
    background: Rectangle {
        radius: root.corner
        color: root.isPrimary ? Theme.accent : root.isQuiet ? "transparent" : root.fill

        Rectangle {
            anchors.fill: parent
            radius: root.corner
            color: root.pressed ? Theme.pressWash : Theme.hoverWash
            visible: root.hovered || root.pressed
        }
        FocusRing {
            shown: root.visualFocus
            corner: root.corner
        }
    }
}
