// SPDX-License-Identifier: MIT
import QtQuick
import Halvane

// The current track with its cover, where it came from, and its place in the queue.
Card {
    id: root

    readonly property real inset: 13

    implicitHeight: cover.height + 2 * root.inset

    AlbumArtwork {
        id: cover
        x: root.inset
        anchors.verticalCenter: parent.verticalCenter
        width: 96
        height: width
        album: Library.player.currentArtworkAlbum
        shown: Library.player.hasCurrentArtworkAlbum
        radius: Theme.radiusMedium
    }
    Column {
        anchors.left: cover.right
        anchors.leftMargin: 14
        anchors.right: parent.right
        anchors.rightMargin: Theme.gap
        anchors.verticalCenter: parent.verticalCenter
        spacing: 3
        PlainText {
            width: parent.width
            text: Library.player.hasCurrentTrack ? Library.player.currentTrack.title : Strings.notPlaying
            font: Theme.cardTitle
        }
        PlainText {
            width: parent.width
            text: Library.player.hasCurrentTrack ? Library.player.currentTrack.artist : ""
            font: Theme.label
            color: Theme.secondaryText
        }
        Item { width: 1; height: Theme.gapTiny }
        PlainText {
            width: parent.width
            text: Library.player.queueSourceText
            font: Theme.caption
            color: Theme.tertiaryText
        }
        PlainText {
            width: parent.width
            text: Library.player.queuePositionText
            font: Theme.caption
            color: Theme.tertiaryText
        }
    }
}
