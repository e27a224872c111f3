// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Templates as T
import Halvane

// One line of a menu: a symbol or a check mark, the words, and the keys or an arrow.
T.MenuItem {
    id: root

    property string symbol
    property string detail
    property bool isDestructive
    readonly property string mark: root.checked ? "checkmark" : root.symbol

    implicitWidth: words.implicitWidth + 36 + (root.detail.length > 0 || root.subMenu ? extra.implicitWidth + 24 : 14)
    implicitHeight: 28
    hoverEnabled: true
    opacity: root.enabled ? 1 : 0.4
    Accessible.name: root.text
    Accessible.checkable: root.checkable
    Accessible.checked: root.checked

    contentItem: Item {
        SymbolLabel {
            x: 8
            anchors.verticalCenter: parent.verticalCenter
            symbol: root.mark
            size: 16
            color: words.color
        }
        Text {
            id: words
            anchors.verticalCenter: parent.verticalCenter
            x: 32
            width: parent.width - 32 - (extra.visible ? extra.width + 16 : 8)
            text: root.text
            font: Theme.label
            textFormat: Text.PlainText
            elide: Text.ElideRight
            color: root.isDestructive ? Theme.warmAccent : Theme.primaryText
        }
        Text {
            id: extra
            anchors.verticalCenter: parent.verticalCenter
            anchors.right: parent.right
            anchors.rightMargin: 8
            visible: text.length > 0
            text: root.subMenu ? Symbol.glyph("chevron.right") : root.detail
            font.family: root.subMenu ? Symbol.family : words.font.family
            font.pixelSize: root.subMenu ? 16 : 11
            color: Theme.tertiaryText
        }
    }
    background: Rectangle {
        radius: Theme.radiusSmall - 2
        color: root.highlighted ? Theme.selectionFill : "transparent"
    }
}
