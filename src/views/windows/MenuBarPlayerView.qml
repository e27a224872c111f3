// SPDX-License-Identifier: MIT
import QtQuick
import Halvane

// The player beside the tray icon.
FocusScope {
    id: root

    readonly property real inset: 15

    implicitWidth: 280
    implicitHeight: 118
    focus: true

    Rectangle {
        anchors.fill: parent
        radius: Theme.radiusLarge
        color: Theme.windowBackground
        Rectangle {
            anchors.fill: parent
            radius: Theme.radiusLarge
            color: Theme.withAlpha(Library.ambient.ambientColor, 0.06)
            border.color: Theme.line
        }
    }
    AlbumArtwork {
        id: cover
        x: root.inset
        y: root.inset
        width: 44
        height: width
        album: Library.player.currentArtworkAlbum
        shown: Library.player.hasCurrentArtworkAlbum
        radius: Theme.radiusSmall
    }
    Column {
        anchors.left: cover.right
        anchors.leftMargin: Theme.gap
        anchors.right: parent.right
        anchors.rightMargin: root.inset
        anchors.verticalCenter: cover.verticalCenter
        spacing: 2
        PlainText {
            width: parent.width
            text: Library.player.hasCurrentTrack ? Library.player.currentTrack.title : Strings.notPlaying
            font: Theme.name
        }
        PlainText {
            width: parent.width
            visible: text.length > 0
            text: Library.player.hasCurrentTrack ? Library.player.currentTrack.artist : ""
            font: Theme.label
            color: Theme.secondaryText
        }
    }
    CompactTransportRow {
        id: transport
        x: root.inset
        anchors.bottom: parent.bottom
        anchors.bottomMargin: root.inset
    }
    SymbolButton {
        anchors.right: parent.right
        anchors.rightMargin: root.inset
        anchors.bottom: parent.bottom
        anchors.bottomMargin: root.inset
        symbol: "macwindow"
        tip: Strings.backToMainWindow
        size: transport.buttonSize
        symbolSize: 18
        fill: Theme.hoverWash
        onClicked: {
            App.openWindow("main")
            App.closeWindow("panel")
        }
    }
}
