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
    Rectangle {
        y: 4
        width: 34
        height: 34
        radius: Theme.radiusSmall
        color: Theme.withAlpha(root.tint, 0.16)
        SymbolLabel {
            anchors.centerIn: parent
            symbol: root.symbol
            size: 20
            color: root.tint
        }
    }
    Column {
        id: heading
        x: 46
        width: action.x - 46 - Theme.gap
        spacing: 2
        Row {
            width: parent.width
            spacing: 6
            PlainText {
                width: Math.min(implicitWidth, parent.width - number.width - 6)
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
        y: 4
        text: root.actionText
        enabled: !root.isBusy
        onClicked: root.acted()
    }
    // Only the rows in sight are made, however many tracks have the problem.
    ListView {
        id: rows
        x: 46
        y: Math.max(heading.height, 40) + 6
        width: parent.width - 46
        height: Math.min(count * 22, 176)
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
