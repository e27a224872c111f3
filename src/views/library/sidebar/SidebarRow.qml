// SPDX-License-Identifier: MIT
import QtQuick
import Halvane

// A row of the sidebar: symbol, name, count.
PressableBase {
    id: root

    required property string symbol
    required property string badge
    property bool isSelected

    implicitHeight: Theme.sidebarRowHeight
    Accessible.role: Accessible.ListItem
    Accessible.name: root.badge.length > 0 ? root.text + ", " + root.badge : root.text
    Accessible.selectable: true
    Accessible.selected: root.isSelected
    Keys.onUpPressed: root.nextItemInFocusChain(false).forceActiveFocus(Qt.BacktabFocusReason)
    Keys.onDownPressed: root.nextItemInFocusChain(true).forceActiveFocus(Qt.TabFocusReason)

    contentItem: Item {
        SymbolLabel {
            id: mark
            x: Theme.rowInset
            width: size
            anchors.verticalCenter: parent.verticalCenter
            symbol: root.symbol
            size: 18
            color: label.color
        }
        PlainText {
            id: label
            x: mark.x + mark.width + Theme.rowInset
            width: parent.width - x - (count.visible ? count.width + Theme.gapLarge : Theme.rowInset)
            height: parent.height
            text: root.text
            font: Theme.body
            color: root.isSelected ? Theme.accent : Theme.primaryText
            Accessible.ignored: true
        }
        CountBadge {
            id: count
            anchors.right: parent.right
            anchors.rightMargin: Theme.rowInset
            anchors.verticalCenter: parent.verticalCenter
            text: root.badge
        }
    }
    background: Rectangle {
        radius: Theme.radiusSmall
        color: root.isSelected ? Theme.selectionFill : root.hovered ? Theme.hoverWash : "transparent"
        FocusRing { shown: root.visualFocus; around: -1 }
    }
}
