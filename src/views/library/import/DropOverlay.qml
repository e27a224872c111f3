// SPDX-License-Identifier: MIT
import QtQuick
import Halvane

// What shows while files are dragged over the window.
Rectangle {
    id: root

    required property bool shown

    color: Qt.rgba(0, 0, 0, 0.48)
    opacity: root.shown ? 1 : 0
    visible: opacity > 0
    Behavior on opacity {
        NumberAnimation { duration: Theme.quick; easing.type: Easing.OutQuad }
    }

    Rectangle {
        anchors.fill: parent
        anchors.margins: 30
        radius: 18
        color: Qt.rgba(0, 0, 0, 0.35) // whatever the words stand on
        border.width: 2
        border.color: Theme.withAlpha(Theme.accent, 0.35)
    }
    Column {
        anchors.centerIn: parent
        spacing: 14
        SymbolTile {
            anchors.horizontalCenter: parent.horizontalCenter
            symbol: "music.note.list"
            side: 72
            symbolSize: 40
            radius: side / 2
        }
        Text {
            anchors.horizontalCenter: parent.horizontalCenter
            text: Strings.dropToAdd
            Accessible.role: Accessible.StaticText
            Accessible.name: text
            font: Theme.overlayTitle
            color: Theme.primaryText
        }
        Text {
            anchors.horizontalCenter: parent.horizontalCenter
            horizontalAlignment: Text.AlignHCenter
            text: Strings.dragAudioSubtitle
            Accessible.role: Accessible.StaticText
            Accessible.name: text
            font: Theme.name
            color: Theme.secondaryText
        }
    }
}
