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
    property bool isLine // between two groups, and no entry
    readonly property string mark: root.checked ? "checkmark" : root.symbol
    readonly property bool hasExtra: root.detail.length > 0 || root.subMenu !== null
    readonly property real inset: Theme.gapSmall
    readonly property real textLeft: 32
    // What stands right of the words: the keys or the arrow, where there are any.
    readonly property real extraWidth: root.hasExtra ? extra.implicitWidth + 2 * root.inset : root.inset
    readonly property real air: root.hasExtra ? 12 : 10

    implicitWidth: root.textLeft + words.implicitWidth + root.air + root.extraWidth
    implicitHeight: Theme.controlHeight
    hoverEnabled: true
    opacity: root.enabled ? 1 : 0.4
    Accessible.role: Accessible.MenuItem
    Accessible.name: root.text
    Accessible.checkable: root.checkable
    Accessible.checked: root.checked

    contentItem: Item {
        SymbolLabel {
            x: root.inset
            anchors.verticalCenter: parent.verticalCenter
            symbol: root.mark
            size: 16
            color: words.color
        }
        Text {
            id: words
            anchors.verticalCenter: parent.verticalCenter
            x: root.textLeft
            width: parent.width - x - root.extraWidth
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
            anchors.rightMargin: root.inset
            visible: root.hasExtra
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
