// SPDX-License-Identifier: MIT
import QtQuick
import Halvane

// A column's label by which the table is sorted when it is clicked.
PressableBase {
    id: root

    required property int column // of SortBy
    readonly property bool isSorted: Library.tableOrder.by === root.column

    implicitWidth: label.implicitWidth + (root.isSorted ? arrow.size + 2 : 0)
    implicitHeight: 24
    tip: !root.isSorted ? Strings.sortByColumn
       : Library.tableOrder.isDescending ? Strings.libraryOrder : Strings.reverseOrder
    Accessible.role: Accessible.ColumnHeader
    Accessible.name: root.text
    Accessible.description: !root.isSorted ? root.tip
        : (Library.tableOrder.isDescending ? Strings.sortedDescending : Strings.sortedAscending) + ". " + root.tip
    onClicked: Library.tableOrder.choose(root.column)

    contentItem: Item {
        Text {
            id: label
            anchors.verticalCenter: parent.verticalCenter
            text: root.text
            font: Theme.captionStrong
            color: root.isSorted ? Theme.accent : root.hovered ? Theme.primaryText : Theme.tertiaryText
            Accessible.ignored: true
        }
        SymbolLabel {
            id: arrow
            x: label.implicitWidth + 2
            height: parent.height
            visible: root.isSorted
            symbol: Library.tableOrder.isDescending ? "arrow.down" : "arrow.up"
            size: 13
            color: Theme.accent
        }
    }
    background: Item {
        FocusRing { shown: root.visualFocus; around: 3; corner: 3 }
    }
}
