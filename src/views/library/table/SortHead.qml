// SPDX-License-Identifier: MIT
import QtQuick
import Halvane

// A column's label by which the table is sorted when it is clicked. The arrow stands after the
// label, or before it where the column's figures end beneath the label's end.
PressableBase {
    id: root

    required property int column // of SortBy
    property string name: root.text
    property bool isAtEnd
    property real room: Infinity
    readonly property bool isSorted: Library.tableOrder.by === root.column
    readonly property bool isOfLibrary: Library.browsing.mode === BrowseMode.Songs
                                        && Library.browsing.selectedPlaylistName.length === 0
    readonly property string deed: !root.isSorted ? Strings.sortByColumn
        : !Library.tableOrder.isDescending ? Strings.reverseOrder
        : root.isOfLibrary ? Strings.libraryOrder : Strings.ownOrder
    readonly property real arrowRoom: root.isSorted ? arrow.size + 2 : 0

    implicitWidth: Math.min(label.implicitWidth + root.arrowRoom, root.room)
    implicitHeight: 24
    tip: label.truncated || root.name !== root.text ? root.name + "\n" + root.deed : root.deed
    Accessible.role: Accessible.ColumnHeader
    Accessible.name: root.name
    Accessible.description: !root.isSorted ? root.deed
        : (Library.tableOrder.isDescending ? Strings.sortedDescending : Strings.sortedAscending) + ". " + root.deed
    onClicked: Library.tableOrder.choose(root.column)

    contentItem: Item {
        Text {
            id: label
            x: root.isAtEnd ? root.width - width : 0
            width: Math.min(implicitWidth, root.width - (root.isAtEnd ? 0 : root.arrowRoom))
            height: parent.height
            verticalAlignment: Text.AlignVCenter
            text: root.text
            elide: Text.ElideRight
            font: Theme.captionStrong
            color: root.isSorted ? Theme.accent : root.hovered ? Theme.primaryText : Theme.tertiaryText
            Accessible.ignored: true
        }
        SymbolLabel {
            id: arrow
            x: root.isAtEnd ? label.x - size - 2 : label.width + 2
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
