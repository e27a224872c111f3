// SPDX-License-Identifier: MIT
pragma ComponentBehavior: Bound
import QtQuick
import Halvane

// One kind of problem: what it is, how many tracks have it, what mends it, and those tracks.
Item {
    id: root

    required property var model
    required property string symbol
    required property color tint
    required property string title
    required property string hint
    required property string actionText
    property bool canRemoveOne
    property bool isBusy
    readonly property int count: rows.count
    readonly property real besideTop: Theme.gapTiny // of the symbol and the button, which are beside two lines
    readonly property real textLeft: tile.width + Theme.gap
    readonly property int rowsInSight: 8

    signal acted
    signal removedOne(string path)

    // The paths of all its tracks.
    function paths(): list<string> {
        const all = []
        for (let row = 0; row < rows.count; ++row)
            all.push(reader.value(row, "path"))
        return all
    }

    width: parent ? parent.width : 0
    visible: root.count > 0
    height: visible ? rows.y + rows.height : 0

    ListCursor {
        id: reader
        model: root.model
        idRole: "path"
        textRole: "title"
    }
    SymbolTile {
        id: tile
        y: root.besideTop
        symbol: root.symbol
        side: 34
        symbolSize: 20
        tint: root.tint
        color: Theme.withAlpha(root.tint, 0.16)
    }
    Column {
        id: heading
        x: root.textLeft
        width: action.x - x - Theme.gap
        spacing: 2
        Row {
            id: titleLine
            width: parent.width
            spacing: 6
            PlainText {
                width: Math.min(implicitWidth, parent.width - number.width - titleLine.spacing)
                text: root.title
                font: Theme.name
                Accessible.role: Accessible.Heading
                Accessible.name: text + ", " + root.count
            }
            Text {
                id: number
                text: root.count
                font: Theme.name
                color: Theme.tertiaryText
                Accessible.ignored: true
            }
        }
        Text {
            width: parent.width
            text: root.hint
            Accessible.role: Accessible.StaticText
            Accessible.name: text
            font: Theme.caption
            color: Theme.tertiaryText
            wrapMode: Text.Wrap
        }
    }
    PillButton {
        id: action
        anchors.right: parent.right
        y: root.besideTop
        text: root.actionText
        enabled: !root.isBusy
        onClicked: root.acted()
    }
    // Only the rows in sight are made, however many tracks have the problem.
    ListView {
        id: rows
        x: root.textLeft
        y: Math.max(heading.height, 40) + titleLine.spacing
        width: parent.width - x
        height: Math.min(count, root.rowsInSight) * Theme.tidyingRowHeight
        model: root.model
        reuseItems: true
        clip: true
        boundsBehavior: Flickable.StopAtBounds
        activeFocusOnTab: root.canRemoveOne
        Accessible.role: Accessible.List
        Accessible.name: root.title
        Keys.onDeletePressed: {
            if (root.canRemoveOne && currentIndex >= 0)
                root.removedOne(reader.value(currentIndex, "path"))
        }
        delegate: MaintenanceRow {
            width: rows.width
            canRemove: root.canRemoveOne
            hasKeyboard: rows.activeFocus && ListView.isCurrentItem
            onRemoved: root.removedOne(path)
        }
    }
}
