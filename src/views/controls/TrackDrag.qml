// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Templates as T
import Halvane

// Lets its parent be dragged onto a playlist of the sidebar.
DragHandler {
    id: root

    required property string title
    required property list<string> paths

    target: null
    acceptedButtons: Qt.LeftButton
    cursorShape: active ? Qt.DragMoveCursor : Qt.ArrowCursor
    onActiveChanged: {
        if (!active)
            carried.Drag.drop()
    }

    property Rectangle carried: Rectangle {
        property list<string> paths: root.paths

        parent: root.parent.T.Overlay.overlay
        x: root.centroid.scenePosition.x + 10
        y: root.centroid.scenePosition.y + 6
        width: Math.min(words.implicitWidth + 40, 260)
        height: 30
        visible: root.active
        radius: Theme.radiusSmall
        color: Theme.panelRaised
        border.color: Theme.accent
        Drag.active: root.active
        Drag.keys: ["halvane/tracks"]
        Drag.hotSpot: Qt.point(-10, -6)

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
            width: parent.width - 38
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
