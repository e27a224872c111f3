// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Window
import Halvane

// The small player: cover, track, progress and transport.
FocusScope {
    id: root

    readonly property real inset: 15
    readonly property real textLeft: cover.x + cover.width + 14

    implicitWidth: 480
    implicitHeight: 86
    focus: true

    AmbientBackdrop { anchors.fill: parent }
    Rectangle {
        anchors.fill: parent
        color: "transparent"
        border.color: Theme.hairline
    }
    WindowMover { anchors.fill: parent }

    AlbumArtwork {
        id: cover
        x: root.inset
        y: root.inset
        width: 56
        height: width
        album: Library.player.currentArtworkAlbum
        shown: Library.player.hasCurrentArtworkAlbum
        radius: Theme.radiusSmall
    }
    Column {
        x: root.textLeft
        y: root.inset
        width: transport.x - x - Theme.gapSmall
        spacing: 2
        PlainText {
            width: parent.width
            text: Library.player.hasCurrentTrack ? Library.player.currentTrack.title : Strings.notPlaying
            font: Theme.name
        }
        PlainText {
            width: parent.width
            text: Library.player.hasCurrentTrack ? Library.player.currentTrack.artist : ""
            font: Theme.label
            color: Theme.secondaryText
        }
    }
    Row {
        id: transport
        anchors.right: back.left
        anchors.rightMargin: Theme.gapLarge
        y: 13
        spacing: Theme.gapTiny
        PreviousButton { anchors.verticalCenter: parent.verticalCenter }
        PlayButton {
            size: 36
            symbolSize: 22
        }
        NextButton { anchors.verticalCenter: parent.verticalCenter }
    }
    SymbolButton {
        id: back
        anchors.right: parent.right
        anchors.rightMargin: root.inset
        y: 19
        symbol: "arrow.up.left.and.arrow.down.right"
        tip: Strings.backToMainWindow
        size: 24
        symbolSize: 14
        fill: Theme.hoverWash
        onClicked: {
            App.openWindow("main")
            App.closeWindow("mini")
        }
    }
    ProgressLine {
        x: root.textLeft
        y: 59
        width: parent.width - x - root.inset
        fill: Library.appearance.spectrumTint
    }
    FileDropArea {
        id: files
        anchors.fill: parent
    }
    Rectangle {
        anchors.fill: parent
        visible: files.isTargeted
        color: Theme.withAlpha(Theme.accent, 0.12)
        border.width: 2
        border.color: Theme.accent
    }
}
