// SPDX-License-Identifier: MIT
import QtQuick
import Halvane

// The player beside the tray icon.
FocusScope {
    id: root

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
        x: 15
        y: 15
        width: 44
        height: 44
        album: Library.player.currentArtworkAlbum
        shown: Library.player.hasCurrentArtworkAlbum
        radius: Theme.radiusSmall
    }
    Column {
        anchors.left: cover.right
        anchors.leftMargin: 12
        anchors.right: parent.right
        anchors.rightMargin: 15
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
        x: 15
        anchors.bottom: parent.bottom
        anchors.bottomMargin: 15
    }
    SymbolButton {
        anchors.right: parent.right
        anchors.rightMargin: 15
        anchors.bottom: parent.bottom
        anchors.bottomMargin: 15
        symbol: "macwindow"
        tip: Strings.backToMainWindow
        size: 32
        symbolSize: 18
        fill: Theme.hoverWash
        onClicked: {
            App.openWindow("main")
            App.closeWindow("panel")
        }
    }
}
