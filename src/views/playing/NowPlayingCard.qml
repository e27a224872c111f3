// SPDX-License-Identifier: MIT
import QtQuick
import Halvane

// The current track with its cover, where it came from, and its place in the queue.
Card {
    id: root

    implicitHeight: 122

    AlbumArtwork {
        id: cover
        x: 13
        anchors.verticalCenter: parent.verticalCenter
        width: 96
        height: 96
        album: Library.player.currentArtworkAlbum
        shown: Library.player.hasCurrentArtworkAlbum
        radius: Theme.radiusMedium
    }
    Column {
        anchors.left: cover.right
        anchors.leftMargin: 14
        anchors.right: parent.right
        anchors.rightMargin: 12
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
        Item { width: 1; height: 4 }
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
