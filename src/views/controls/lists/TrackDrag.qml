// SPDX-License-Identifier: MIT
pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Templates as T
import Halvane

// Lets its parent be dragged onto a playlist of the sidebar.
DragHandler {
    id: root

    property string title
    property list<string> paths
    property Item carried: null
    readonly property point fromPointer: Qt.point(10, 6)

    // Asks what is to be carried.
    signal begun

    target: null
    acceptedButtons: Qt.LeftButton
    cursorShape: active ? Qt.DragMoveCursor : Qt.ArrowCursor
    onActiveChanged: {
        if (root.active) {
            root.begun()
            root.carried = root.label.createObject(root.parent.T.Overlay.overlay)
        } else if (root.carried) {
            root.carried.Drag.drop()
            root.carried.destroy()
        }
    }

    // Made when a drag begins: a table has many rows, and few are ever dragged.
    readonly property Component label: Rectangle {
        x: root.centroid.scenePosition.x + root.fromPointer.x
        y: root.centroid.scenePosition.y + root.fromPointer.y
        width: Math.min(words.x + words.implicitWidth + Theme.rowInset, 260)
        height: 30
        radius: Theme.radiusSmall
        color: Theme.panelRaised
        border.color: Theme.accent
        Drag.active: root.active
        Drag.source: root
        Drag.keys: ["halvane/tracks"]
        Drag.hotSpot: Qt.point(-root.fromPointer.x, -root.fromPointer.y)

        SymbolLabel {
            x: 9
            height: parent.height
            symbol: "music.note"
            size: 15
            color: Theme.accent
        }
        Text {
            id: words
            x: 30
            width: parent.width - x - Theme.gapSmall
            height: parent.height
            verticalAlignment: Text.AlignVCenter
            text: root.title
            font: Theme.label
            color: Theme.primaryText
            elide: Text.ElideRight
            textFormat: Text.PlainText
        }
    }
}
