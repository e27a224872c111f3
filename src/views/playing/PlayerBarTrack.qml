// SPDX-License-Identifier: MIT
import QtQuick
import Halvane

// The current track at the player bar's left. Its cover leads to the track in the library.
Item {
    id: root

    PressableBase {
        id: cover
        anchors.verticalCenter: parent.verticalCenter
        width: 52
        height: width
        enabled: Library.player.hasCurrentTrack
        tip: Strings.viewAlbum
        onClicked: Library.browsing.jumpToAlbum(Library.player.currentTrack)
        contentItem: AlbumArtwork {
            album: Library.player.currentArtworkAlbum
            shown: Library.player.hasCurrentArtworkAlbum
            radius: Theme.radiusSmall
        }
        background: Item {
            FocusRing { shown: cover.visualFocus }
        }
    }
    Column {
        anchors.left: cover.right
        anchors.leftMargin: Theme.gap
        anchors.right: heart.left
        anchors.rightMargin: Theme.gapSmall
        anchors.verticalCenter: parent.verticalCenter
        spacing: 3
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
    TransportButton {
        id: heart
        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        enabled: Library.player.hasCurrentTrack
        symbol: Library.player.isCurrentTrackLoved ? "heart.fill" : "heart"
        tip: Strings.loved
        isActive: Library.player.isCurrentTrackLoved
        Accessible.checkable: true
        Accessible.checked: Library.player.isCurrentTrackLoved
        onClicked: Library.userData.toggleLoved(Library.player.currentTrack.path)
    }
}
